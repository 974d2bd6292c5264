#include "fuzzinput.h"
#include "fuzztargets.h"

#include "models/archivedata.h"
#include "models/customchannels.h"
#include "models/locators.h"
#include "protocol/cannedreply.h"
#include "protocol/ukiprogram.h"
#include "settings/ukisettings.h"

// The input is one command text, as the engine would send it.
void fuzzCannedReply(const uint8_t *data, size_t size)
{
    const QString command = Fuzz::latin1(data, size);
    const QString reply = cannedReply(command);
    Fuzz::consume(reply);
    const QStringList lines = Fuzz::replyLines(reply);

    if (command.startsWith(QLatin1String("srch_stats_"))) {
        UkiProgram program;
        program.type = UkiProgram::ReadStatistics;
        program.addCommand(command);
        program.commands.last().response = lines;
        fuzzStatisticsProgram(program);
        if (!reply.isEmpty())
            Fuzz::check(lines.value(0).split(QLatin1Char('\t')).size() == 3,
                        "a statistics reply without three columns");
    } else if (command == QLatin1String("cfg")) {
        Fuzz::touchModel(Locators(lines));
    } else if (command == QLatin1String("dump")) {
        Fuzz::touchModel(ArchiveData(lines));
    } else if (command == QLatin1String("get_cust")) {
        Fuzz::touchModel(CustomChannels(lines));
    } else if (command == QLatin1String("sets")) {
        UkiSettings settings;
        settings.fromLines(lines);
        Fuzz::consume(settings.toLines().join(QLatin1Char('\n')));
    }
}
