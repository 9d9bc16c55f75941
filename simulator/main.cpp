// The simulated device: ConnMan, the configuration manager and the speech service on one bus, driven by
// scripts.

#include "CallLog.h"
#include "ConfigurationManager.h"
#include "Connman.h"
#include "ConnmanWire.h"
#include "Faults.h"
#include "ScriptService.h"
#include "SpeechService.h"
#include "Timings.h"
#include <QCommandLineParser>
#include <QCoreApplication>

namespace {
QString systemBusAddress()
{
    return qEnvironmentVariable("DBUS_SYSTEM_BUS_ADDRESS",
                                QStringLiteral("unix:path=/var/run/dbus/system_bus_socket"));
}
} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("device-simulator"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Simulates the device around network-manager."));
    parser.addHelpOption();
    const QCommandLineOption addressOption(QStringLiteral("address"), QStringLiteral("The bus to live on."),
                                           QStringLiteral("address"), systemBusAddress());
    const QCommandLineOption fastOption(QStringLiteral("fast"),
                                        QStringLiteral("Shorten ConnMan's waits to a few milliseconds."));
    parser.addOptions({addressOption, fastOption});
    parser.process(application);

    using namespace simulator;
    registerWireTypes();
    const QString address = parser.value(addressOption);
    CallLog calls;
    Faults faults;
    const Instruments instruments{&calls, &faults};
    Connman connman(address, instruments, parser.isSet(fastOption) ? Timings::fast() : Timings());
    ConfigurationManager configurationManager(address, instruments);
    SpeechService speech(address, instruments);
    ScriptService script(address, {connman, configurationManager, speech, calls, faults});

    // The script's name comes last: who sees it finds everything else there.
    const bool isReady = connman.join() && configurationManager.join() && speech.join() && script.join();
    return isReady ? QCoreApplication::exec() : EXIT_FAILURE;
}
