#include "Console.h"
#include "Device.h"
#include "EventWait.h"
#include "ExitStatus.h"
#include "Feed.h"
#include "Interrupts.h"
#include "LineReader.h"
#include "Observer.h"
#include "Programs.h"
#include "Tour.h"
#include "Words.h"
#include <csignal>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QStandardPaths>
#include <QTextCodec>

namespace {

struct Options
{
    QCommandLineOption tour{QStringLiteral("tour"), QStringLiteral("Show what it does, and end.")};
    QCommandLineOption shell{
        QStringLiteral("shell"),
        QStringLiteral("A shell in which network-managerctl, busctl and others see the printer's bus.")};
    QCommandLineOption busOnly{
        QStringLiteral("bus-only"),
        QStringLiteral("Print the address of the printer's bus, and stay until standard "
                       "input is closed or SIGTERM comes.")};
    QCommandLineOption wrap{QStringLiteral("wrap"),
                            QStringLiteral("Run the daemon with this command before it: 'valgrind --quiet'."),
                            QStringLiteral("command")};
    QCommandLineOption log{QStringLiteral("log"), QStringLiteral("Logging rules for the daemon."),
                           QStringLiteral("rules")};
    QCommandLineParser parser;

    Options()
    {
        parser.setApplicationDescription(QStringLiteral("The networking daemon on a simulated printer, and a "
                                                        "console to play its surroundings and its user."));
        parser.addHelpOption();
        parser.addVersionOption();
        parser.addOptions({tour, shell, busOnly, wrap, log});
    }
};

/// Gets the printer going; false when somebody wants an end before it is.
bool switchOn(Console &console, const Device &device, const Interrupts &interrupts)
{
    const QStringList opening = Scenery::opening();
    for (const QString &command : opening) {
        console.execute(command);
    }
    test_support::waitUntil([&] { return !device.isStarting() || interrupts.signalNumber() != 0; });
    return interrupts.signalNumber() == 0;
}

int converse(Console &console, const Device &device, Feed &feed)
{
    feed.tell(Scenery::greeting() + QStringLiteral(" Type \"help\" for what you can do, \"quit\" to end."));
    feed.tell(QStringLiteral("Its system bus is %1").arg(device.busAddress()));
    QObject::connect(&console, &Console::finished, qApp, &QCoreApplication::quit);
    console.readStandardInput();
    QCoreApplication::exec();
    return console.understoodAll() || LineReader::isTerminal() ? Done : Misused;
}

int showTour(Console &console, Feed &feed)
{
    Tour tour(tourSteps(), console, feed);
    QObject::connect(&tour, &Tour::finished, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    tour.start();
    QCoreApplication::exec();
    return tour.succeeded() ? EXIT_SUCCESS : EXIT_FAILURE;
}

int startShell(const Device &device)
{
    std::puts("A shell on the printer's bus: try network-managerctl, or busctl. \"exit\" ends it.");
    std::fflush(stdout);
    return runShell(device.busAddress());
}

/// Its first word is found where the shell would find it: the daemon has a PATH of its own.
QStringList wrapper(const QString &text)
{
    QStringList words = splitWords(text).value_or(QStringList());
    if (!words.isEmpty()) {
        words.first() = QStandardPaths::findExecutable(words.first());
    }
    return words;
}

int play(const Options &options, Device &device, Feed &feed, Interrupts &interrupts)
{
    const QCommandLineParser &parser = options.parser;
    LineReader reader(QStringLiteral("printer> "), LineReader::usualStyle(false));
    Console console(device, feed, reader);
    if (parser.isSet(options.tour)) {
        return showTour(console, feed);
    }
    if (parser.isSet(options.shell) || parser.isSet(options.busOnly)) {
        feed.silence();
    }
    if (!switchOn(console, device, interrupts)) {
        return Done;
    }
    if (parser.isSet(options.shell)) {
        return startShell(device);
    }
    if (parser.isSet(options.busOnly)) {
        offerBus(device.busAddress(), interrupts);
        return Done;
    }
    return converse(console, device, feed);
}

} // namespace

int main(int argc, char *argv[])
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationVersion(QStringLiteral(VERSION));
    Options options;
    options.parser.process(application);

    Interrupts interrupts;
    Device device;
    if (!device.isReady()) {
        return EXIT_FAILURE;
    }
    device.daemon().setLoggingRules(options.parser.value(options.log));
    device.daemon().setWrapper(wrapper(options.parser.value(options.wrap)));
    Feed feed;
    const Observer observer(device, feed);
    QObject::connect(&interrupts, &Interrupts::interrupted, &application, &QCoreApplication::quit);
    const int status = play(options, device, feed, interrupts);
    device.switchOff();
    return interrupts.signalNumber() == SIGINT ? Cancelled : status;
}
