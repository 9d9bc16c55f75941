#include "BusLossWatch.h"
#include "NetworkManager.h"
#include "NetworkManagerDBus.h"
#include "QuitSignals.h"

#include <libtactora/Settings.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextCodec>

#include <mcheck.h>
#include <sys/stat.h>

namespace {

/// No file of the daemon's is to be writable by others, whatever its starter left it.
constexpr mode_t WritableByOwnerOnly = S_IWGRP | S_IWOTH;

void setIdentity()
{
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QCoreApplication::setOrganizationName(QStringLiteral("Tactora AB"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("tactora.com"));
    QCoreApplication::setApplicationName(QStringLiteral("network-manager"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.14.0"));
}

QCommandLineOption deviceOption()
{
    const QString defaultDevice = QStringLiteral("/dev/input/event0");
    return {{QStringLiteral("d"), QStringLiteral("device")},
            QStringLiteral("The keyboard device for user-interaction (default: '%1').").arg(defaultDevice),
            QStringLiteral("device"),
            defaultDevice};
}

} // namespace

int main(int argc, char *argv[])
{
    mtrace();
    umask(WritableByOwnerOnly);
    QCoreApplication application(argc, argv);
    setIdentity();
    libtactora::Settings::init();

    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption device = deviceOption();
    parser.addOption(device);
    parser.process(application);

    const QuitSignals quitSignals;
    const BusLossWatch busLossWatch(QDBusConnection::systemBus());
    auto *networkManager = new NetworkManager(&application);
    networkManager->initKeyboard(parser.value(device));
    new NetworkManagerDBus(networkManager);

    return QCoreApplication::exec();
}
