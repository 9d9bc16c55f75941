// How the client ends: what it says of failures and misuse, its help, and its scripts.
#include "ClientProgram.h"
#include "FakeDaemon.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "Text.h"
#include <memory>
#include <QTest>

using namespace test_support;

class ClientEndsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void failureIsToldWithItsReason();
    void failureWithoutAReasonIsTold();
    void anotherClientsErrorIsNoReason();
    void emptyAnswerWithAnErrorIsAFailure();
    void missingHostNameIsAFailure();
    void misuseIsToldWithTheForms();
    void absentDaemonIsTold();
    void missingBusIsTold();
    void missingPermissionIsTold();

    void helpAndVersionNeedNoBus_data();
    void helpAndVersionNeedNoBus();
    void helpOfOneCommandIsItsForms();
    void shellIsToldTheContinuations();

    void commandsAreReadOneAfterTheOther();
    void statusOfAScriptIsItsWorst();
    void credentialsOfAScriptAreItsNextLines();

private:
    PrivateBus m_bus;
    std::unique_ptr<FakeDaemon> m_daemon;
};

void ClientEndsTest::init()
{
    m_daemon.reset(); // its name is taken until then
    m_daemon = std::make_unique<FakeDaemon>(m_bus.address());
    QVERIFY(m_daemon->isReady());
    m_daemon->setAnswer("networks"_s, QVariantMap{{kitchen, QVariantMap{{"Name"_s, "Kitchen"_s}}}});
}

void ClientEndsTest::failureIsToldWithItsReason()
{
    m_daemon->setAnswer(false);
    m_daemon->setError("connect"_s, "Unable to connect network 'a'."_s);
    ClientProgram client({"connect"_s, "=a"_s});
    QCOMPARE(client.waitForExit(), 1);
    QCOMPARE(client.errors(), "Failed: Unable to connect network 'a'.\n"_s);
    QCOMPARE(client.output(), QString());
}

void ClientEndsTest::failureWithoutAReasonIsTold()
{
    m_daemon->setAnswer(false);
    ClientProgram client({"region"_s, "SE"_s});
    QCOMPARE(client.waitForExit(), 1);
    QCOMPARE(client.errors(), "Failed; the network daemon gives no reason.\n"_s);
}

void ClientEndsTest::anotherClientsErrorIsNoReason()
{
    m_daemon->setAnswer(false);
    m_daemon->setError("setNameservers"_s, "Unknown network: 'b'"_s);
    ClientProgram client({"nameservers"_s, "=a"_s, "9.9.9.9"_s});
    QCOMPARE(client.waitForExit(), 1);
    QCOMPARE(client.errors(), "Failed; the network daemon gives no reason.\n"_s);
}

void ClientEndsTest::emptyAnswerWithAnErrorIsAFailure()
{
    m_daemon->setAnswer(QString());
    m_daemon->setError("getAddress"_s, "Unknown network: 'a'"_s);
    ClientProgram client({"ipv4-address"_s, "=a"_s});
    QCOMPARE(client.waitForExit(), 1);
    QCOMPARE(client.errors(), "Failed: Unknown network: 'a'\n"_s);
}

void ClientEndsTest::missingHostNameIsAFailure()
{
    m_daemon->setAnswer(QString());
    ClientProgram client({"hostname"_s});
    QCOMPARE(client.waitForExit(), 1);
    QCOMPARE(client.errors(), "There is none.\n"_s);
}

void ClientEndsTest::misuseIsToldWithTheForms()
{
    ClientProgram unknown({"conect"_s, "=a"_s});
    QCOMPARE(unknown.waitForExit(), 2);
    QCOMPARE(unknown.errors(), "There is no command \"conect\"; \"help\" lists them.\n"_s);
    ClientProgram incomplete({"power"_s, "maybe"_s});
    QCOMPARE(incomplete.waitForExit(), 2);
    QCOMPARE(incomplete.errors(), "It is: power; or: power on|off\n"_s);
    ClientProgram option({"--colour"_s});
    QCOMPARE(option.waitForExit(), 2);
    QCOMPARE(option.errors(), "Unknown option 'colour'.\n"_s);
}

void ClientEndsTest::absentDaemonIsTold()
{
    m_daemon.reset();
    ClientProgram client({"power"_s});
    QCOMPARE(client.waitForExit(), 3);
    QCOMPARE(client.errors(), "The network daemon is not running.\n"_s);
}

void ClientEndsTest::missingBusIsTold()
{
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere");
    ClientProgram client({"power"_s});
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_bus.address().toUtf8());
    QCOMPARE(client.waitForExit(), 3);
    QVERIFY2(client.errors().startsWith("There is no system bus: "_s), qPrintable(client.errors()));
}

void ClientEndsTest::missingPermissionIsTold()
{
    m_daemon->refuse("org.freedesktop.DBus.Error.AccessDenied"_s);
    ClientProgram client({"power"_s});
    QCOMPARE(client.waitForExit(), 3);
    QCOMPARE(client.errors(),
             "You may not use the network daemon: only root and the members of the group " NETWORK_GROUP
             " may.\n"_s);
}

void ClientEndsTest::helpAndVersionNeedNoBus_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("output");
    QTest::newRow("--version") << QStringList{"--version"_s} << "network-managerctl " VERSION "\n"_s;
    QTest::newRow("--help") << QStringList{"--help"_s} << "\nconnect NETWORK: "_s;
    QTest::newRow("help") << QStringList{"help"_s} << "\nconnect NETWORK: "_s;
}

void ClientEndsTest::helpAndVersionNeedNoBus()
{
    QFETCH(const QStringList, words);
    QFETCH(const QString, output);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nowhere");
    ClientProgram client(words);
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_bus.address().toUtf8());
    QCOMPARE(client.waitForExit(), 0);
    QVERIFY2(client.output().contains(output), qPrintable(client.output()));
}

void ClientEndsTest::helpOfOneCommandIsItsForms()
{
    ClientProgram client({"help"_s, "power"_s});
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(client.output(), "power: whether Wi-Fi is on\npower on|off: switch Wi-Fi\n"_s);
}

void ClientEndsTest::shellIsToldTheContinuations()
{
    m_daemon->setAnswer(QStringList{"Kitchen"_s, "sweet potato"_s});
    const QString options = "--json\n--plain\n--watch\n--help\n--version\n"_s;
    ClientProgram words({"--complete"_s, "--"_s, "power"_s});
    QCOMPARE(words.waitForExit(), 0);
    QCOMPARE(words.output(), "on\noff\n"_s + options);
    ClientProgram networks({"--complete"_s, "--"_s, "disconnect"_s});
    QCOMPARE(networks.waitForExit(), 0);
    QCOMPARE(networks.output(), "Kitchen\nsweet potato\n"_s + options);
    QCOMPARE(m_daemon->calls(),
             QStringList{"activeNetworks (none)"_s}); // the Tab key scans and changes nothing
}

void ClientEndsTest::commandsAreReadOneAfterTheOther()
{
    ClientProgram client({}, "power on\n\nlist\n connect 'Kitchen' \nregion SE\nexit\npower off\n"_s);
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(m_daemon->calls(), (QStringList{"setWifiPower true"_s, "networks (none)"_s,
                                             "connect "_s + kitchen, "setWifiRegion SE"_s}));
}

void ClientEndsTest::statusOfAScriptIsItsWorst()
{
    ClientProgram client({}, "power maybe\npower"_s);
    QCOMPARE(client.waitForExit(), 2);
    QCOMPARE(m_daemon->calls(), QStringList{"getWifiPower (none)"_s});
    ClientProgram unclosed({}, "connect 'Kitchen\n"_s);
    QCOMPARE(unclosed.waitForExit(), 2);
}

void ClientEndsTest::credentialsOfAScriptAreItsNextLines()
{
    ClientProgram client({}, "register =a\nsweet potato\nforget =a\n"_s);
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(m_daemon->calls(), (QStringList{"registerWifi a, sweet potato"_s, "forgetWifi a"_s}));
}

static const Suite<ClientEndsTest> clientEndsTest;
#include "ClientEndsTest.moc"
