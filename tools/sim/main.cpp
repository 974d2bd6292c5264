// kiranto-sim: a KIRANTO device on a pseudo-terminal, for the demo and the end-to-end tests.

#include "faultplan.h"
#include "simdevice.h"
#include "simline.h"
#include "transcript.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <unistd.h>

int main(int argc, char *argv[])
{
    Sim::installStopSignals();
    // Armed before anything else, so that a parent gone during start-up is noticed below.
    const pid_t parent = getppid();
    for (int i = 1; i < argc; ++i) {
        if (qstrcmp(argv[i], "--exit-with-parent") == 0)
            prctl(PR_SET_PDEATHSIG, SIGTERM);
    }
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kiranto-sim"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
            "Simulates a KIRANTO device on a pseudo-terminal. Prints the link path on stdout "
            "once the device is ready and serves until SIGINT or SIGTERM.\n\n"
            "Faults: silence (no reply), reject (\"Unrecognize\"), slow (first byte after "
            "80 ms), gap (60 ms of silence after the line that crosses the middle of the "
            "reply), garbage (96 bytes of noise with NULs instead of the reply), hangup (half "
            "the reply, then the line is closed and the simulator exits), flood (the reply "
            "over and over until the next command arrives). A silent, refused or garbled "
            "command leaves the device's state alone."));
    parser.addHelpOption();
    const QCommandLineOption linkOption(QStringLiteral("link"),
                                        QStringLiteral("Symbolic link to the line."),
                                        QStringLiteral("path"));
    const QCommandLineOption variantOption(
            QStringLiteral("variant"),
            QStringLiteral("uki-kiranto (default), ukps-ks, ukps-ab or ukps-ks-2."),
            QStringLiteral("key"),
            QStringLiteral("uki-kiranto"));
    const QCommandLineOption archiveOption(QStringLiteral("archive-size"),
                                           QStringLiteral("Events in the archive (default 500)."),
                                           QStringLiteral("n"),
                                           QStringLiteral("500"));
    const QCommandLineOption stateOption(
            QStringLiteral("state"),
            QStringLiteral("Keeps settings, custom channels and corrections in this file."),
            QStringLiteral("file"));
    const QCommandLineOption logOption(
            QStringLiteral("log"),
            QStringLiteral("Transcript with monotonic time stamps (appended)."),
            QStringLiteral("file"));
    const QCommandLineOption faultOption(
            QStringLiteral("fault"),
            QStringLiteral("A fault for every command, or for commands beginning with PREFIX; "
                           "repeatable, first match wins. MODE: %1.")
                    .arg(QLatin1String(Sim::FaultPlan::modeList())),
            QStringLiteral("mode[:prefix]"));
    const QCommandLineOption faultFileOption(
            QStringLiteral("fault-file"),
            QStringLiteral("Further fault rules, one a line, re-read whenever the file changes."),
            QStringLiteral("file"));
    const QCommandLineOption firmwareOption(
            QStringLiteral("firmware"),
            QStringLiteral("Version of the monitor's own row in \"cfg\" (default per variant)."),
            QStringLiteral("a.b.c"));
    const QCommandLineOption latencyOption(
            QStringLiteral("latency"),
            QStringLiteral("Milliseconds from a command to its first reply byte (default 2)."),
            QStringLiteral("ms"),
            QStringLiteral("2"));
    const QCommandLineOption parentOption(
            QStringLiteral("exit-with-parent"),
            QStringLiteral("Stops (as on SIGTERM) when the parent process ends."));
    parser.addOptions({linkOption,
                       variantOption,
                       archiveOption,
                       stateOption,
                       logOption,
                       faultOption,
                       faultFileOption,
                       firmwareOption,
                       latencyOption,
                       parentOption});
    parser.process(app);

    auto fail = [](const QString &message) {
        fprintf(stderr, "kiranto-sim: %s\n", qPrintable(message));
        return 2;
    };
    if (!parser.isSet(linkOption))
        return fail(QStringLiteral("--link is required"));
    Sim::Variant variant = Sim::Variant::UkiKiranto;
    if (!Sim::variantFromKey(parser.value(variantOption).toLatin1(), &variant))
        return fail(QStringLiteral("unknown variant \"%1\"").arg(parser.value(variantOption)));
    bool ok = false;
    const int archiveSize = parser.value(archiveOption).toInt(&ok);
    if (!ok || archiveSize < 0 || archiveSize > 100000)
        return fail(QStringLiteral("--archive-size takes 0..100000"));
    const int latency = parser.value(latencyOption).toInt(&ok);
    if (!ok || latency < 0 || latency > 10000)
        return fail(QStringLiteral("--latency takes 0..10000 ms"));

    if (parser.isSet(parentOption) && getppid() != parent)
        return fail(QStringLiteral("the parent process has ended"));

    Sim::FaultPlan faults;
    for (const QString &ruleText : parser.values(faultOption)) {
        if (!faults.addRule(ruleText.toLatin1()))
            return fail(QStringLiteral("unknown fault \"%1\"").arg(ruleText));
    }
    if (parser.isSet(faultFileOption))
        faults.setRuleFile(parser.value(faultFileOption));

    Sim::SimDevice device(variant, archiveSize, parser.value(firmwareOption).toLatin1());
    if (parser.isSet(stateOption)) {
        QString error;
        if (!device.loadState(parser.value(stateOption), &error))
            return fail(error);
        device.setStatePath(parser.value(stateOption));
    }

    Sim::Transcript transcript;
    if (parser.isSet(logOption) && !transcript.open(parser.value(logOption)))
        return fail(QStringLiteral("cannot write %1").arg(parser.value(logOption)));

    Sim::SimLine line(device, faults, transcript);
    line.setLatencyMs(latency);
    QString error;
    if (!line.open(parser.value(linkOption), &error))
        return fail(error);
    transcript.write("ready " + Sim::variantKey(variant) + ' ' + line.slaveName());
    printf("%s\n", qPrintable(parser.value(linkOption)));
    fflush(stdout);
    return line.serve();
}
