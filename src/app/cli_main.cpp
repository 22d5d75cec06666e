// fondarix-cli: the batch jobs of the desktop client, without the desktop.
// Every verb calls the same logic as the screen that runs the job; see --help.

#include "app/cli/cli.h"

#include "core/config.h"
#include "core/czech.h"
#include "core/msg.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>

namespace {
void printHelp(std::FILE *stream)
{
    std::fprintf(stream, "použití: fondarix-cli PŘÍKAZ [ARGUMENTY] [--login LOGIN]\n\npříkazy:\n");
    for (const CliVerb &verb : CliVerbs())
        std::fprintf(stream, "  %s %s\n      %s\n", verb.name.toLocal8Bit().constData(),
                     verb.usage.toLocal8Bit().constData(), verb.summary.toLocal8Bit().constData());
    std::fprintf(stream, "\n--login LOGIN: práce pod tímto uživatelem (role, středisko a filtr GRANTů).\n"
                         "Návratové kódy: 0 úspěch, 1 odmítnutí nebo chyba, 2 chybné použití.\n");
}

// The verb whose words open the argument list; two-word verbs before one-word ones.
const CliVerb *findVerb(const QStringList &args, int *words)
{
    const CliVerb *found = nullptr;
    for (const CliVerb &verb : CliVerbs()) {
        const QStringList parts = verb.name.split(QLatin1Char(' '));
        if (parts.size() <= args.size() && args.mid(0, parts.size()) == parts
            && (!found || parts.size() > *words)) {
            found = &verb;
            *words = int(parts.size());
        }
    }
    return found;
}

// Messages of the logic go to stderr; a question is answered No, since a batch job
// answers its questions through its flags before it starts.
const MessageSink cliMessages{
    [](const QString &text, int style, const QString &) {
        std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
        return (style & 0x7) == 0 ? int(AnswerOk) : int(AnswerCancel);
    },
    [](const QString &, const QString &, const QString &) { return std::optional<QString>(); },
};
} // namespace

int main(int argc, char **argv)
{
    // Report and picture work needs a GUI application; there is no window to show.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Dates and numbers of a job come out as on the screen that runs it.
    UseCzech();
    const QStringList args = app.arguments().mid(1);
    if (args.isEmpty()) {
        printHelp(stderr);
        return CliUsage;
    }
    if (args.first() == QLatin1String("--help") || args.first() == QLatin1String("-h")
        || args.first() == QLatin1String("help")) {
        printHelp(stdout);
        return CliOk;
    }
    int words = 0;
    const CliVerb *verb = findVerb(args, &words);
    if (!verb) {
        std::fprintf(stderr, "fondarix-cli: neznámý příkaz „%s“; viz fondarix-cli --help\n",
                     args.first().toLocal8Bit().constData());
        return CliUsage;
    }
    const CliArgs parsed(*verb, args.mid(words));
    if (!parsed.ok()) {
        std::fprintf(stderr, "fondarix-cli %s: %s\npoužití: fondarix-cli %s %s\n",
                     verb->name.toLocal8Bit().constData(), parsed.error().toLocal8Bit().constData(),
                     verb->name.toLocal8Bit().constData(), verb->usage.toLocal8Bit().constData());
        return CliUsage;
    }
    SetMessageSink(&cliMessages);
    SetEndProcessHandler([](int code) { std::exit(code == 0 ? CliFailed : code); });
    InitSpecialDirs();
    return verb->run(parsed);
}
