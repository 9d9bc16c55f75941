#include "NetworkManager.h"
#include "FakeCommands.h"
#include "FakeDevices.h"
#include "LogCapture.h"
#include "Suite.h"
#include "Text.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace test_support;

/// What only code that holds the daemon's central object sees of it: the running daemon opens one keyboard,
/// and is never asked to be quiet.
class NetworkManagerTest : public QObject
{
    Q_OBJECT
private slots:
    void secondKeyboardIsIgnoredWithAWarning();
    void keyboardThatCannotBeOpenedCanBeFollowedByAnother();
    void failedSwitchIsReportedUnlessQuiet_data();
    void failedSwitchIsReportedUnlessQuiet();
    void signalsAreDeclaredInTheirOrder();
    void slotsAreDeclaredInTheirOrder();
    void interfaceStateIsAKnownType();
};

namespace {
const QString alreadyOpen = "Keyboard is already opened, ignore call."_s;
const QString event0 = "event0"_s;
const QString event1 = "event1"_s;

QString pathOf(const QString &node)
{
    return "/dev/input/"_s + node;
}

/// The names of the object's own methods of one kind, in the order of their declaration.
QStringList methods(QMetaMethod::MethodType type)
{
    const QMetaObject &object = NetworkManager::staticMetaObject;
    QStringList names;
    for (int index = object.methodOffset(); index < object.methodCount(); ++index) {
        if (object.method(index).methodType() == type) {
            names << QString::fromLatin1(object.method(index).name());
        }
    }
    return names;
}
} // namespace

void NetworkManagerTest::secondKeyboardIsIgnoredWithAWarning()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    devices.addKeyboard(event0);
    devices.addKeyboard(event1);
    QLoggingCategory::setFilterRules("NetworkManager.warning=true"_s);
    NetworkManager manager(nullptr);
    LogCapture log;

    manager.initKeyboard(pathOf(event0));
    QCOMPARE(log.lines("NetworkManager"_s), QStringList());
    manager.initKeyboard(pathOf(event1));
    QCOMPARE(log.lines("NetworkManager"_s, QtWarningMsg), QStringList(alreadyOpen));
    QLoggingCategory::setFilterRules({});
}

void NetworkManagerTest::keyboardThatCannotBeOpenedCanBeFollowedByAnother()
{
    FakeDevices devices(FakeDevices::SeenBy::ThisProcess);
    devices.addKeyboard(event0);
    QLoggingCategory::setFilterRules("NetworkManager=true"_s);
    NetworkManager manager(nullptr);
    LogCapture log;

    manager.initKeyboard(pathOf(event1));
    manager.initKeyboard(pathOf(event0));
    QCOMPARE(log.lines("NetworkManager"_s), QStringList());
    manager.initKeyboard(pathOf(event0));
    QCOMPARE(log.lines("NetworkManager"_s), QStringList(alreadyOpen));
    QLoggingCategory::setFilterRules({});
}

void NetworkManagerTest::failedSwitchIsReportedUnlessQuiet_data()
{
    const QString unspoken = "ERROR: Failed to queue speech-request."_s;
    QTest::addColumn<bool>("quiet");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("quiet") << true << QStringList();
    QTest::newRow("not quiet") << false << QStringList{unspoken, "Wifi reset failed!"_s};
}

void NetworkManagerTest::failedSwitchIsReportedUnlessQuiet()
{
    QFETCH(bool, quiet);
    QFETCH(QStringList, lines);
    const QTemporaryDir directory;
    FakeCommands commands(directory.path());
    commands.removeProgram("connmanctl"_s);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", commands.path().toLocal8Bit());
    NetworkManager manager(nullptr);
    const QSignalSpy powerChanged(&manager, &NetworkManager::powerChanged);
    LogCapture log;

    manager.resetWiFi(true, quiet);
    qputenv("PATH", path);
    // Nobody is there to say it.
    QCOMPARE(log.lines("NetworkManager"_s, QtCriticalMsg), lines);
    QCOMPARE(powerChanged.size(), 0);
}

void NetworkManagerTest::signalsAreDeclaredInTheirOrder()
{
    QCOMPARE(methods(QMetaMethod::Signal),
             (QStringList{"error"_s, "powerChanged"_s, "regionChanged"_s, "networkRegistered"_s,
                          "networkForgot"_s, "networkConnected"_s, "networkDisconnected"_s}));
}

void NetworkManagerTest::slotsAreDeclaredInTheirOrder()
{
    QCOMPARE(methods(QMetaMethod::Slot), (QStringList{"connect"_s,
                                                      "disconnect"_s,
                                                      "configure"_s,
                                                      "configureIPv6"_s,
                                                      "getConfiguration"_s,
                                                      "getIPv6Configuration"_s,
                                                      "getHwAddress"_s,
                                                      "getAddress"_s,
                                                      "getNetmask"_s,
                                                      "getGateway"_s,
                                                      "getIPv6Address"_s,
                                                      "getPrefix"_s,
                                                      "getNameservers"_s,
                                                      "setNameservers"_s,
                                                      "networks"_s,
                                                      "wpsNetworks"_s,
                                                      "activeNetworks"_s,
                                                      "setWifiPower"_s,
                                                      "getWifiPower"_s,
                                                      "forgetWifi"_s,
                                                      "registerWifi"_s,
                                                      "registerHiddenWifi"_s,
                                                      "registerWiFiWpa2Enterprise"_s,
                                                      "registerWifiWps"_s,
                                                      "checkWifiTechnology"_s,
                                                      "checkBluetoothTechnology"_s,
                                                      "getWifiRegion"_s,
                                                      "setWifiRegion"_s,
                                                      "getLockRegion"_s,
                                                      "setLockRegion"_s,
                                                      "getHostName"_s,
                                                      "setHostName"_s,
                                                      "connmanServiceConnected"_s,
                                                      "interfaceStateChanged"_s,
                                                      "tryConnectToPreferred"_s,
                                                      "keyUp"_s,
                                                      "keyDown"_s}));
}

void NetworkManagerTest::interfaceStateIsAKnownType()
{
    const NetworkManager manager(nullptr);
    QVERIFY(QMetaType::type("ConnmanManager::InterfaceState") != QMetaType::UnknownType);
    QVERIFY(NetworkManager::staticMetaObject.indexOfSlot(
                "interfaceStateChanged(QString,ConnmanManager::InterfaceState)") >= 0);
}

// The object is built without a bus and without settings of the machine it runs on.
static const Suite<NetworkManagerTest> networkManagerTest;

int main(int argc, char **argv)
{
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_DIRS", settings.path().toLocal8Bit());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName("Tactora AB"_s);
    return runSuite();
}

#include "NetworkManagerTest.moc"
