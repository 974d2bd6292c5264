#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

// Starts the built program in the portable layout and reads the first entries of its log.
class tst_Startup : public QObject
{
    Q_OBJECT

private slots:
    void firstLogEntries();

private:
    static QStringList logEntries(const QString &folder);
};

QStringList tst_Startup::logEntries(const QString &folder)
{
    const QDir dir(folder);
    QStringList entries;
    const QStringList files = dir.entryList(
            {QStringLiteral("KIRANTO-Link-*.log")}, QDir::Files, QDir::Name);
    for (const QString &name : files) {
        QFile file(dir.filePath(name));
        if (file.open(QIODevice::ReadOnly | QIODevice::Text))
            entries += QString::fromUtf8(file.readAll())
                               .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    return entries;
}

void tst_Startup::firstLogEntries()
{
    QTemporaryDir scratch;
    QVERIFY(scratch.isValid());
    const QDir dir(scratch.path());
    const QString program = dir.filePath(QStringLiteral("kiranto-link"));
    QVERIFY(QFile::copy(QStringLiteral(KIRANTO_LINK_BINARY), program));
    QVERIFY(dir.mkdir(QStringLiteral("config")));
    QVERIFY(dir.mkdir(QStringLiteral("home")));

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    env.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    env.insert(QStringLiteral("HOME"), dir.filePath(QStringLiteral("home")));
    QProcess process;
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(dir.filePath(QStringLiteral("home")));
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, {});
    QVERIFY2(process.waitForStarted(10000), qPrintable(process.errorString()));

    const QString logs = dir.filePath(QStringLiteral("logs"));
    const bool written = QTest::qWaitFor([&] { return logEntries(logs).size() >= 3; }, 30000);
    const QStringList entries = logEntries(logs);
    const QProcess::ProcessState state = process.state();
    process.terminate();
    if (!process.waitForFinished(10000)) {
        process.kill();
        process.waitForFinished(10000);
    }
    QVERIFY2(written, qPrintable(entries.join(QLatin1Char('\n'))));
    QCOMPARE(state, QProcess::Running);

    const QRegularExpression line(QStringLiteral(R"(^\d\d:\d\d:\d\d:\d\d\d - \[INFO\]: (.*)$)"));
    QStringList messages;
    for (int i = 0; i < 3; ++i) {
        const QRegularExpressionMatch match = line.match(entries.at(i));
        QVERIFY2(match.hasMatch(), qPrintable(entries.at(i)));
        messages << match.captured(1);
    }
    QCOMPARE(messages,
             QStringList({QStringLiteral("------- Starting log -------"),
                          QStringLiteral("Loading english translation. true"),
                          QStringLiteral("KIRANTO-Link , version  1.00")}));
    // The portable layout writes nothing into the per-user folders.
    const QDir home(dir.filePath(QStringLiteral("home")));
    QVERIFY(!home.exists(QStringLiteral(".config/Marvolet")));
    QVERIFY(!home.exists(QStringLiteral(".local/share/Marvolet")));
}

QTEST_GUILESS_MAIN(tst_Startup)
#include "tst_startup.moc"
