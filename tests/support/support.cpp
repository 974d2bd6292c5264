#include "support.h"

#include "app/application.h"
#include "app/programsettings.h"
#include "ui/popupmessage.h"

#include <QAbstractItemModel>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMutex>
#include <QRegularExpression>
#include <QWidget>

namespace TestSupport {

Simulator::Simulator(const QString &folder)
    : m_folder(folder)
    , m_link(folder + QStringLiteral("/ttySIM"))
{}

Simulator::~Simulator()
{
    stop();
}

bool Simulator::start(const QStringList &arguments)
{
    stop();
    QFile::remove(m_link);
    const QString program = QString::fromLocal8Bit(qgetenv("KIRANTO_SIM"));
    if (program.isEmpty())
        return false;
    m_process.setProgram(program);
    m_process.setArguments(QStringList{QStringLiteral("--link"),
                                       m_link,
                                       QStringLiteral("--exit-with-parent"),
                                       QStringLiteral("--state"),
                                       statePath(),
                                       QStringLiteral("--log"),
                                       transcriptPath()}
                           + arguments);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start();
    if (!m_process.waitForStarted(5000))
        return false;
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(10000))
            return false;
    }
    return m_process.readLine().trimmed() == m_link.toLocal8Bit();
}

void Simulator::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

int Simulator::exitCode(int waitMs)
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(waitMs))
        return -1;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

QStringList Simulator::receivedCommands() const
{
    QStringList commands;
    const QList<QByteArray> lines = readFile(transcriptPath()).split('\n');
    for (const QByteArray &line : lines) {
        const int at = line.indexOf(" cmd ");
        if (at >= 0)
            commands.append(QString::fromLatin1(line.mid(at + 5)));
    }
    return commands;
}

ScratchInstall::ScratchInstall(const QString &port, int variant)
{
    Application::initResources();
    activate(port, variant);
}

void ScratchInstall::activate(const QString &port, int variant) const
{
    Application::setFolders({configFolder(), logFolder(), dataFolder()});
    ProgramSettings::instance() = ProgramSettings();
    ProgramSettings::instance().port = port;
    ProgramSettings::instance().variant = variant;
}

namespace {

QMutex g_mutex;
QStringList g_messages;
QtMessageHandler g_previous = nullptr;

void capture(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    {
        QMutexLocker locker(&g_mutex);
        g_messages.append(message);
    }
    // Offscreen windows ask for size hints that the platform cannot give.
    if (type >= QtWarningMsg && !message.contains(QLatin1String("propagateSizeHints")))
        g_previous(type, context, message);
}

} // namespace

MessageCapture::MessageCapture()
{
    clear();
    g_previous = qInstallMessageHandler(capture);
}

MessageCapture::~MessageCapture()
{
    qInstallMessageHandler(g_previous);
}

QStringList MessageCapture::messages() const
{
    QMutexLocker locker(&g_mutex);
    return g_messages;
}

bool MessageCapture::contains(const QString &text) const
{
    return !messages().filter(text).isEmpty();
}

void MessageCapture::clear()
{
    QMutexLocker locker(&g_mutex);
    g_messages.clear();
}

QStringList modelRows(const QAbstractItemModel *model, int role)
{
    QStringList rows;
    for (int row = 0; row < model->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model->columnCount(); ++column)
            cells.append(model->index(row, column).data(role).toString());
        rows.append(cells.join(QLatin1Char('|')));
    }
    return rows;
}

QString popup(const QWidget *window)
{
    const auto *popupMessage = window->findChild<PopupMessage *>();
    if (!popupMessage || popupMessage->label()->isHidden())
        return QString();
    const QLabel *label = popupMessage->label();
    return QStringLiteral("[[%1]]%2").arg(label->property("class").toString(), label->text());
}

bool matches(const QString &pattern, const QString &text)
{
    const QString expression = QRegularExpression::escape(pattern).replace(QLatin1String("\\*"),
                                                                           QLatin1String(".*"));
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::DotMatchesEverythingOption)
            .match(text)
            .hasMatch();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate)
           && file.write(content) == content.size();
}

QString sourceDir()
{
    return QString::fromLocal8Bit(qgetenv("KIRANTO_SOURCE_DIR"));
}

QString binaryPath(const char *name)
{
    return QString::fromLocal8Bit(qgetenv(name));
}

} // namespace TestSupport
