#include "transcript.h"

#include <QFile>

#include <time.h>

namespace Sim {

double monotonicSeconds()
{
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return double(ts.tv_sec) + double(ts.tv_nsec) / 1e9;
}

Transcript::~Transcript()
{
    if (m_file)
        fclose(m_file);
}

bool Transcript::open(const QString &path)
{
    m_file = fopen(QFile::encodeName(path).constData(), "a");
    return m_file != nullptr;
}

void Transcript::write(const QByteArray &event)
{
    if (!m_file)
        return;
    fprintf(m_file, "%.6f %s\n", monotonicSeconds(), event.constData());
    fflush(m_file);
}

void Transcript::command(const QByteArray &command)
{
    if (!m_file)
        return;
    QByteArray text("cmd ");
    for (char c : command) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7f && byte != '\\')
            text += c;
        else
            text += "\\x" + QByteArray::number(byte, 16).rightJustified(2, '0');
    }
    write(text);
}

} // namespace Sim
