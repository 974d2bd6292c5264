#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

class QAbstractItemModel;
class QWidget;

namespace TestSupport {

// kiranto-sim on its own pseudo-terminal in a folder, stopped when the object goes.
class Simulator final
{
public:
    explicit Simulator(const QString &folder);
    ~Simulator();

    // Starts kiranto-sim with these extra arguments ("--variant", "--fault", ...) and waits
    // until it prints its link path. The link is "<folder>/ttySIM".
    bool start(const QStringList &arguments = {});
    // SIGTERM, then SIGKILL after 5 s.
    void stop();
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    // Waits up to waitMs for the process to end; its exit code, or -1 if it runs on or crashed.
    int exitCode(int waitMs = 5000);

    QString link() const { return m_link; }
    // The simulator's settings file and transcript (given as --state and --log by start()).
    QString statePath() const { return m_folder + QStringLiteral("/sim-state.json"); }
    QString transcriptPath() const { return m_folder + QStringLiteral("/sim-transcript.log"); }
    // The commands the device received so far, in order, from the transcript (bytes outside
    // printable ASCII as "\xNN").
    QStringList receivedCommands() const;

private:
    QString m_folder;
    QString m_link;
    QProcess m_process;
};

// A scratch installation: config, log and data folders in a temporary folder, made the
// program's folders, and the program settings reset to {port, variant}.
class ScratchInstall final
{
public:
    explicit ScratchInstall(const QString &port = QString(), int variant = 3);

    // Points the program's folders and settings at this installation again.
    void activate(const QString &port, int variant) const;

    bool isValid() const { return m_dir.isValid(); }
    QString path() const { return m_dir.path(); }
    QString configFolder() const { return path() + QStringLiteral("/config"); }
    QString logFolder() const { return path() + QStringLiteral("/logs"); }
    QString dataFolder() const { return path() + QStringLiteral("/data"); }

private:
    QTemporaryDir m_dir;
};

// Collects every message of the process while it exists; warnings and worse, other than the
// expected ones, are passed on to the previous handler as well.
class MessageCapture final
{
public:
    MessageCapture();
    ~MessageCapture();
    QStringList messages() const;
    bool contains(const QString &text) const;
    void clear();
};

// Model contents as text: one string per row, the cells of the display role joined by '|'.
QStringList modelRows(const QAbstractItemModel *model, int role = 0);

// The main window's popup as shown: "[[Class]]text" while visible, "" while hidden.
QString popup(const QWidget *window);

// Whether text is pattern as a whole, each '*' in pattern standing for any run of characters.
bool matches(const QString &pattern, const QString &text);

// A whole file's bytes; empty when it cannot be read.
QByteArray readFile(const QString &path);
bool writeFile(const QString &path, const QByteArray &content);

// Paths of the build, from the environment that CTest sets.
QString sourceDir();
QString binaryPath(const char *name);

} // namespace TestSupport
