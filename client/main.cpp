#include "Client.h"
#include "Credentials.h"
#include "Interrupts.h"
#include "LineReader.h"
#include "NetworkNames.h"
#include "Output.h"
#include "Session.h"
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QTextCodec>
#include <unistd.h>

namespace {

struct Arguments
{
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Print this, and end.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                               QStringLiteral("Print the version, and end.")};
    QCommandLineOption json{QStringLiteral("json"), QStringLiteral("Print replies as JSON, for programs.")};
    QCommandLineOption plain{QStringLiteral("plain"),
                             QStringLiteral("No columns, and nothing is ever redrawn. So it is anyway unless "
                                            "standard output is a terminal.")};
    QCommandLineOption watch{QStringLiteral("watch"),
                             QStringLiteral("After \"list\", tell what happens, until Ctrl-C.")};
    /// For the shell's completion alone.
    QCommandLineOption complete{QStringLiteral("complete")};
    QCommandLineParser parser;

    Arguments() { parser.addOptions(shown() + QList<QCommandLineOption>{complete}); }
    QList<QCommandLineOption> shown() const { return {json, plain, watch, help, version}; }
};

void printHelp(const Client &client, const QList<QCommandLineOption> &options)
{
    QStringList lines = {
        QStringLiteral("Usage: network-managerctl [OPTION...] [COMMAND [WORD...]]"),
        QStringLiteral("Asks the printer's network daemon. Without a command it takes commands "
                       "from standard input."),
        QString()};
    for (const Command &command : client.commands()) {
        lines << QStringLiteral("%1: %2").arg(command.usage(), command.help);
    }
    lines << networkHelp() << credentialHelp() << QString();
    for (const QCommandLineOption &option : options) {
        lines << QStringLiteral("--%1: %2").arg(option.names().constLast(), option.description());
    }
    printLine(lines.join(QLatin1Char('\n')));
}

// Options may stand anywhere, and are no words of a command.
ExitStatus printCompletions(const Client &client, QStringList words, const QList<QCommandLineOption> &options)
{
    QStringList optionWords;
    for (const QCommandLineOption &option : options) {
        optionWords << QStringLiteral("--") + option.names().constLast();
    }
    for (const QString &option : qAsConst(optionWords)) {
        words.removeAll(option);
    }
    const QStringList found =
        continuations(client.commands(), words, [&client] { return client.activeNetworkNames(); });
    for (const QString &word : found + optionWords) {
        printLine(word);
    }
    return Done;
}

} // namespace

int main(int argc, char *argv[])
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("network-managerctl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VERSION));
    Arguments arguments;
    QCommandLineParser &parser = arguments.parser;
    if (!parser.parse(QCoreApplication::arguments())) {
        complain(parser.errorText());
        return Misused;
    }
    if (parser.isSet(arguments.version)) {
        parser.showVersion();
    }
    const bool plain = parser.isSet(arguments.plain) || isatty(STDOUT_FILENO) == 0;
    Interrupts interrupts;
    LineReader reader(QStringLiteral("network> "), LineReader::usualStyle(plain));
    // Not the one that all of a program share: of that, Qt keeps back the signals until an event loop runs,
    // but not the answers, so why a first call failed might be told after its failure.
    Client client(QDBusConnection::connectToBus(QDBusConnection::SystemBus, QStringLiteral("client")),
                  {parser.isSet(arguments.json), plain, parser.isSet(arguments.watch)}, reader, interrupts);
    if (parser.isSet(arguments.help)) {
        printHelp(client, arguments.shown());
        return Done;
    }
    const QStringList words = parser.positionalArguments();
    if (parser.isSet(arguments.complete)) {
        return printCompletions(client, words, arguments.shown());
    }
    return words.isEmpty() ? Session(client, reader, interrupts).run() : client.run(words);
}
