#include "fuzztargets.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

// The libFuzzer entry points of one target; KIRANTO_FUZZ_ENTRY names the target's body.
namespace {

void quietMessages(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    // Parsers log every bad line: only a fatal message is worth the time.
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

} // namespace

// Qt's JSON parser loses the value of a key that occurs twice in one object: not ours to fix.
// Telling it apart needs the full allocation stack, so the JSON targets unwind the slow way.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:QJsonDocument::fromJson\n";
}

#ifdef KIRANTO_FUZZ_FULL_STACKS
extern "C" const char *__asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}
#endif

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // Local times depend on the zone; take one with daylight saving in the device's years.
    qputenv("TZ", "Europe/Moscow");
    static int argc = 1;
    static char name[] = "kiranto-fuzz";
    static char *argv[] = {name, nullptr};
    static QCoreApplication application(argc, argv);
    qInstallMessageHandler(quietMessages);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    KIRANTO_FUZZ_ENTRY(data, size);
    return 0;
}
