#include "Console.h"
#include "Device.h"
#include "EventWait.h"
#include "Feed.h"
#include "Observer.h"
#include "OutsideTheWorld.h"
#include "QuitSignals.h"
#include "Tour.h"
#include <QCommandLineParser>
#include <QCoreApplication>

namespace {

const QString daemonIsThere = QStringLiteral("bus: com.tactora.NetworkManager is there");

int converse(Console &console, Device &device, Feed &feed)
{
    const QStringList scenery = device.surroundings().scenery();
    for (const QString &command : scenery) {
        console.execute(command);
    }
    test_support::waitUntil(
        [&] { return feed.events().contains(daemonIsThere) || !device.daemon().isRunning(); });
    feed.tell(device.surroundings().greeting() +
              QStringLiteral(" Type \"help\" for what you can do, \"quit\" to end."));
    QObject::connect(&console, &Console::finished, qApp, &QCoreApplication::quit);
    console.readStandardInput();
    return QCoreApplication::exec();
}

int showTour(Console &console, Feed &feed)
{
    Tour tour(tourSteps(), console, feed);
    QObject::connect(&tour, &Tour::finished, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    tour.start();
    QCoreApplication::exec();
    return tour.succeeded() ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The networking daemon on a simulated printer."));
    parser.addHelpOption();
    const QCommandLineOption tour(QStringLiteral("tour"), QStringLiteral("Show what it does, and end."));
    const QCommandLineOption log(QStringLiteral("log"), QStringLiteral("Logging rules for the daemon."),
                                 QStringLiteral("rules"));
    const QCommandLineOption wired(
        QStringLiteral("wired"),
        QStringLiteral(
            "With the real ConnMan and a real cable (tests/wired/run-wired makes room for them)."));
    parser.addOptions({tour, log, wired});
    parser.process(application);

    if (parser.isSet(wired) && !isInsideTheWorld()) {
        qCritical("The real ConnMan needs a world of its own: start tests/wired/run-wired instead.");
        return EXIT_FAILURE;
    }

    const QuitSignals quitSignals;
    Feed feed;
    Device device(parser.isSet(wired) ? Device::Kind::Wired : Device::Kind::Simulated);
    if (!device.isReady()) {
        return EXIT_FAILURE;
    }
    device.daemon().setLoggingRules(parser.value(log));
    const Observer observer(device, feed);
    Console console(device, feed);
    const int status = parser.isSet(tour) ? showTour(console, feed) : converse(console, device, feed);
    device.switchOff();
    return status;
}
