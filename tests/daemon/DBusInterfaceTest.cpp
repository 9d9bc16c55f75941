#include "EventWait.h"
#include "Introspection.h"
#include "Suite.h"
#include "TestDevice.h"
#include "Text.h"
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace test_support;

/// The shape of com.tactora.NetworkManager on the bus, and what happens when it cannot be put there.
class DBusInterfaceTest : public QObject
{
    Q_OBJECT
private slots:
    void introspectionListsTheMembersInOrder();
    void introspectionIsTheCheckedInFile();
    void argumentsHaveNoNames();
    void argumentsHaveNamesInTheCheckedInFile();
    void everyMemberIsExplainedInTheCheckedInFile();
    void objectHasNoOtherInterfaceOfItsOwn();
    void objectIsAtTheRootOnly();
    void secondDaemonSaysTheNameIsInUseAndKeepsRunning();
    void secondDaemonTakesNoNameWhenTheFirstEnds();
    void refusedNameIsReportedWithTheReasonOfTheBus();
    void firstDaemonGoesOnBesideASecond();
};

namespace {
const QString daemonName = "com.tactora.NetworkManager"_s;
const QString nameInUse = "default|critical|Unable to register service: Service-name in use."_s;

const QStringList members = {
    "method connect(s) -> b"_s,
    "method disconnect(s) -> b"_s,
    "method configure(s, s) -> b"_s,
    "method configure(s, s, s, s, s) -> b"_s,
    "method configureIPv6(s, s) -> b"_s,
    "method getHwAddress(s) -> s"_s,
    "method getAddress(s) -> s"_s,
    "method getNetmask(s) -> s"_s,
    "method getGateway(s) -> s"_s,
    "method getIPv6Address(s) -> s"_s,
    "method getPrefix(s) -> s"_s,
    "method getConfiguration(s) -> a{sv}"_s,
    "method getIPv6Configuration(s) -> a{sv}"_s,
    "method getNameservers(s) -> as"_s,
    "method setNameservers(s, as) -> b"_s,
    "method networks() -> a{sv}"_s,
    "method wpsNetworks() -> as"_s,
    "method activeNetworks() -> as"_s,
    "method setWifiPower(b) -> b"_s,
    "method getWifiPower() -> b"_s,
    "method forgetWifi(s) -> b"_s,
    "method registerWifi(s, s) -> b"_s,
    "method registerHiddenWifi(s, s, s) -> b"_s,
    "method registerWiFiWpa2Enterprise(s, s, s, s, s) -> b"_s,
    "method registerWifiWps(s) -> b"_s,
    "method registerWifiWps(s, s) -> b"_s,
    "method checkWifiTechnology() -> b"_s,
    "method checkBluetoothTechnology() -> b"_s,
    "method getWifiRegion() -> s"_s,
    "method setWifiRegion(s) -> b"_s,
    "method getLockRegion() -> b"_s,
    "method setLockRegion(b) -> b"_s,
    "method getHostName() -> s"_s,
    "method setHostName(s) -> b"_s,
};
const QStringList relayedSignals = {
    "signal error(s)"_s,
    "signal powerChanged(b)"_s,
    "signal regionChanged(s, b)"_s,
    "signal networkRegistered(s)"_s,
    "signal networkForgot(s)"_s,
    "signal networkConnected(s)"_s,
    "signal networkDisconnected(s)"_s,
};

QString checkedInFile()
{
    QFile file(QStringLiteral(INTERFACE_FILE));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString introspect(const DaemonClient &client, const QString &service, const QString &path)
{
    const QDBusMessage call = QDBusMessage::createMethodCall(
        service, path, "org.freedesktop.DBus.Introspectable"_s, "Introspect"_s);
    return QDBusReply<QString>(client.connection().call(call));
}

QStringList ownMembers(const QString &xml)
{
    return introspectedMembers(xml, daemonName);
}

QStringList withoutSignals(const QStringList &all)
{
    return all.filter(QRegularExpression("^method "_s));
}

QStringList onlySignals(const QStringList &all)
{
    return all.filter(QRegularExpression("^signal "_s));
}

/// The unique bus name of a daemon that has not got the well-known one.
QString uniqueNameOf(const Daemon &daemon, const DaemonClient &client)
{
    QDBusConnectionInterface *bus = client.connection().interface();
    const QStringList names = bus->registeredServiceNames();
    for (const QString &name : names) {
        if (name.startsWith(QLatin1Char(':')) &&
            bus->servicePid(name) == static_cast<uint>(daemon.processId())) {
            return name;
        }
    }
    return {};
}
} // namespace

void DBusInterfaceTest::introspectionListsTheMembersInOrder()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    const QStringList all = ownMembers(introspect(device.client, daemonName, "/"_s));
    QCOMPARE(withoutSignals(all), members);
    QCOMPARE(withoutSignals(all).size(), 34);
    QCOMPARE(onlySignals(all), relayedSignals);
    QCOMPARE(onlySignals(all).size(), 7);
}

void DBusInterfaceTest::introspectionIsTheCheckedInFile()
{
    const QString checkedIn = checkedInFile();
    LonelyDaemon device;
    QVERIFY(device.start());
    const QString live = introspect(device.client, daemonName, "/"_s);
    QCOMPARE(withoutSignals(ownMembers(checkedIn)), withoutSignals(ownMembers(live)));
    QCOMPARE(onlySignals(ownMembers(checkedIn)), onlySignals(ownMembers(live)));
}

void DBusInterfaceTest::argumentsHaveNoNames()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    QCOMPARE(introspectedArgumentNames(introspect(device.client, daemonName, "/"_s), daemonName),
             QStringList());
}

void DBusInterfaceTest::argumentsHaveNamesInTheCheckedInFile()
{
    const QString xml = checkedInFile();
    QCOMPARE(introspectedArgumentNames(xml, daemonName).size(), xml.count("<arg "_s));
}

void DBusInterfaceTest::everyMemberIsExplainedInTheCheckedInFile()
{
    // The reference takes the comment that stands before a member and begins with its name.
    const QRegularExpression explained("<!-- (\\w+):(?:(?!-->).)+-->\\s+<(?:method|signal) name=\"\\1\">"_s,
                                       QRegularExpression::DotMatchesEverythingOption);
    QCOMPARE(checkedInFile().count(explained), members.size() + relayedSignals.size());
}

void DBusInterfaceTest::objectHasNoOtherInterfaceOfItsOwn()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    const QString freedesktop = "org.freedesktop.DBus."_s;
    QCOMPARE(introspectedInterfaces(introspect(device.client, daemonName, "/"_s)),
             (QStringList{daemonName, freedesktop + "Properties"_s, freedesktop + "Introspectable"_s,
                          freedesktop + "Peer"_s}));
}

void DBusInterfaceTest::objectIsAtTheRootOnly()
{
    LonelyDaemon device;
    QVERIFY(device.start());
    QVERIFY(!introspect(device.client, daemonName, "/"_s).isEmpty());
    QCOMPARE(ownMembers(introspect(device.client, daemonName, "/com"_s)), QStringList());
}

void DBusInterfaceTest::secondDaemonSaysTheNameIsInUseAndKeepsRunning()
{
    LonelyDaemon first;
    QVERIFY(first.start());
    Daemon second(first.bus.address());
    QVERIFY(second.start());
    QVERIFY(second.log().takeProblem(nameInUse));
    QVERIFY(second.isRunning());
    // Its object is there, on its unique name.
    const QString uniqueName = uniqueNameOf(second, first.client);
    QCOMPARE(withoutSignals(ownMembers(introspect(first.client, uniqueName, "/"_s))), members);
    QVERIFY(second.stop());
    QCOMPARE(second.log().lines(), QStringList(nameInUse));
}

void DBusInterfaceTest::secondDaemonTakesNoNameWhenTheFirstEnds()
{
    LonelyDaemon first;
    QVERIFY(first.start());
    Daemon second(first.bus.address());
    QVERIFY(second.start());
    QVERIFY(second.log().takeProblem(nameInUse));
    QVERIFY(first.daemon.stop());
    // The bus hands a name on to those who queue for it in the moment it is given up.
    QVERIFY(!uniqueNameOf(second, first.client).isEmpty());
    QVERIFY(!first.client.connection().interface()->isServiceRegistered(daemonName));
}

void DBusInterfaceTest::firstDaemonGoesOnBesideASecond()
{
    LonelyDaemon first;
    QVERIFY(first.start());
    Daemon second(first.bus.address());
    QVERIFY(second.start());
    QVERIFY(second.log().takeProblem(nameInUse));
    first.daemon.sandbox().setHostName("first");
    second.sandbox().setHostName("second");
    QCOMPARE(first.client.call("getHostName").toString(), "first"_s);
}

void DBusInterfaceTest::refusedNameIsReportedWithTheReasonOfTheBus()
{
    BusLimits limits;
    limits.refusedName = daemonName;
    LonelyDaemon device(limits);
    QVERIFY(device.daemon.start());
    const QString begin = "default|critical|Unable to register service: \"Connection "_s;
    QVERIFY(waitUntil([&] { return !device.daemon.log().lines().isEmpty(); }));
    const QString line = device.daemon.log().lines().constFirst();
    QVERIFY2(line.startsWith(begin), qPrintable(line));
    QVERIFY2(line.contains("is not allowed to own the service \\\"com.tactora.NetworkManager\\\""_s),
             qPrintable(line));
    QVERIFY(device.daemon.log().takeProblem(line));
    QVERIFY(device.daemon.isRunning());
    const QString uniqueName = uniqueNameOf(device.daemon, device.client);
    QCOMPARE(withoutSignals(ownMembers(introspect(device.client, uniqueName, "/"_s))), members);
}

static const Suite<DBusInterfaceTest> dBusInterfaceTest;
#include "DBusInterfaceTest.moc"
