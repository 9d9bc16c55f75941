// The client's commands, one a start: what it asks the daemon and what it prints.
#include "ClientProgram.h"
#include "FakeDaemon.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "Text.h"
#include <memory>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace test_support;

namespace {

const QString library = "wifi_020000000200_4c696272617279_managed_none"_s;
const QString otherKitchen = "wifi_020000000200_4b69746368656e_managed_none"_s;

QVariantMap network(const QString &name)
{
    return {{"Name"_s, name}, {"State"_s, "idle"_s}, {"Strength"_s, QVariant::fromValue<uchar>(60)}};
}

} // namespace

class ClientCommandsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void wordsBecomeACall_data();
    void wordsBecomeACall();
    void replyIsPrinted_data();
    void replyIsPrinted();
    void replyIsPrintedForPrograms_data();
    void replyIsPrintedForPrograms();
    void networksAreListedInWords();
    void noNetworksAreSaidToBeNone();

    void nameIsLookedUpInTheList();
    void wholeIdentifierNeedsNoList();
    void nameOfTwoNetworksIsRefusedWithBoth();
    void unknownNameIsRefused();

    void credentialsComeFromStandardInput_data();
    void credentialsComeFromStandardInput();
    void credentialsAreNotTakenFromTheCommandLine();
    void withoutTheCredentialNothingIsRegistered();

private:
    PrivateBus m_bus;
    std::unique_ptr<FakeDaemon> m_daemon;
};

void ClientCommandsTest::init()
{
    m_daemon.reset(); // its name is taken until then
    m_daemon = std::make_unique<FakeDaemon>(m_bus.address());
    QVERIFY(m_daemon->isReady());
    m_daemon->setAnswer("networks"_s,
                        QVariantMap{{kitchen, network("Kitchen"_s)}, {library, network("Library"_s)}});
}

void ClientCommandsTest::wordsBecomeACall_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("calls");
    const auto row = [](const char *line, const QStringList &calls) {
        QTest::newRow(line) << QString::fromLatin1(line).split(QLatin1Char(' ')) << calls;
    };
    row("connect =a", {"connect a"_s});
    row("disconnect =a", {"disconnect a"_s});
    row("forget =a", {"forgetWifi a"_s});
    row("register-wps =a", {"registerWifiWps a"_s});
    row("address =a dhcp", {"configure a, dhcp"_s});
    row("address =a manual 10.0.0.2 255.0.0.0 10.0.0.1",
        {"configure a, manual, 10.0.0.2, 255.0.0.0, 10.0.0.1"_s});
    row("ipv6 =a off", {"configureIPv6 a, off"_s});
    row("nameservers =a 9.9.9.9 1.1.1.1", {"setNameservers a, 9.9.9.9, 1.1.1.1"_s});
    row("nameservers =a none", {"setNameservers a, (none)"_s});
    row("power off", {"setWifiPower false"_s});
    row("region SE", {"setWifiRegion SE"_s});
    row("hostname embosser", {"setHostName embosser"_s});
    row("show =a", {"getConfiguration a"_s, "getIPv6Configuration a"_s, "getNameservers a"_s});
    row("-- connect =-odd", {"connect -odd"_s});
}

void ClientCommandsTest::wordsBecomeACall()
{
    QFETCH(const QStringList, words);
    ClientProgram client(words);
    QCOMPARE(client.waitForExit(), 0);
    QTEST(m_daemon->calls(), "calls");
    QCOMPARE(client.errors(), QString());
}

void ClientCommandsTest::replyIsPrinted_data()
{
    QTest::addColumn<QVariant>("answer");
    QTest::addColumn<QString>("output");
    const auto row = [](const char *line, const QVariant &answer, const char *output) {
        QTest::newRow(line) << answer << QString::fromLatin1(output);
    };
    row("connect =a", true, "Done.\n");
    row("power", true, "on\n");
    row("lock", false, "off\n");
    row("technologies", true, "Wi-Fi: yes\nBluetooth: yes\n");
    row("region", "SE"_s, "SE\n");
    row("region ", QString(), "(none)\n");
    row("active", QStringList{"Kitchen"_s, "Wired"_s}, "Kitchen, Wired\n");
    row("active ", QStringList(), "(none)\n");
    row("address =a", QVariantMap{{"Method"_s, "dhcp"_s}, {"Address"_s, "10.0.0.2"_s}},
        "Address: 10.0.0.2\nMethod: dhcp\n");
    row("show =a", QVariantMap{{"Method"_s, "dhcp"_s}},
        "IPv4:\n  Method: dhcp\nIPv6:\n  Method: dhcp\nName servers:\n  Method: dhcp\n");
}

void ClientCommandsTest::replyIsPrinted()
{
    QFETCH(const QVariant, answer);
    m_daemon->setAnswer(answer);
    const QString line = QString::fromLatin1(QTest::currentDataTag());
    ClientProgram client(line.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    QCOMPARE(client.waitForExit(), 0);
    QTEST(client.output(), "output");
}

void ClientCommandsTest::replyIsPrintedForPrograms_data()
{
    QTest::addColumn<QVariant>("answer");
    QTest::addColumn<QString>("json");
    const auto row = [](const char *line, const QVariant &answer, const char *json) {
        QTest::newRow(line) << answer << QString::fromLatin1(json);
    };
    row("power", true, R"({"value":true})");
    row("region", "SE"_s, R"({"value":"SE"})");
    row("active", QStringList{"Kitchen"_s}, R"(["Kitchen"])");
    row("address =a", QVariantMap{{"Method"_s, "dhcp"_s}}, R"({"Method":"dhcp"})");
    row("technologies", false, R"({"Bluetooth":false,"Wi-Fi":false})");
    row("connect =a", true, R"({"value":true})");
}

void ClientCommandsTest::replyIsPrintedForPrograms()
{
    QFETCH(const QVariant, answer);
    m_daemon->setAnswer(answer);
    const QString line = QString::fromLatin1(QTest::currentDataTag());
    ClientProgram client(line.split(QLatin1Char(' ')) + QStringList{"--json"_s});
    QCOMPARE(client.waitForExit(), 0);
    QTEST(QString::fromUtf8(QJsonDocument::fromJson(client.output().toUtf8()).toJson(QJsonDocument::Compact)),
          "json");
}

void ClientCommandsTest::networksAreListedInWords()
{
    ClientProgram plain({"list"_s});
    QCOMPARE(plain.waitForExit(), 0);
    QCOMPARE(plain.output(),
             "1. Kitchen, idle, signal 60, new, %1\n2. Library, idle, signal 60, new, %2\n"_s.arg(kitchen,
                                                                                                  library));
    ClientProgram json({"list"_s, "--json"_s});
    QCOMPARE(json.waitForExit(), 0);
    const QJsonObject networks = QJsonDocument::fromJson(json.output().toUtf8()).object();
    QCOMPARE(networks.keys(), (QStringList{kitchen, library}));
    QCOMPARE(networks.value(kitchen).toObject().value("Strength"_s), QJsonValue(60));
}

void ClientCommandsTest::noNetworksAreSaidToBeNone()
{
    m_daemon->setAnswer("networks"_s, QVariantMap());
    ClientProgram client({"list"_s});
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(client.output(), "There are no networks.\n"_s);
}

void ClientCommandsTest::nameIsLookedUpInTheList()
{
    ClientProgram client({"connect"_s, "Kitchen"_s});
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(m_daemon->calls(), (QStringList{"networks (none)"_s, "connect "_s + kitchen}));
}

void ClientCommandsTest::wholeIdentifierNeedsNoList()
{
    ClientProgram client({"connect"_s, kitchen});
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(m_daemon->calls(), QStringList{"connect "_s + kitchen});
}

void ClientCommandsTest::nameOfTwoNetworksIsRefusedWithBoth()
{
    m_daemon->setAnswer("networks"_s,
                        QVariantMap{{kitchen, network("Kitchen"_s)}, {otherKitchen, network("Kitchen"_s)}});
    ClientProgram client({"connect"_s, "Kitchen"_s});
    QCOMPARE(client.waitForExit(), 1);
    QVERIFY(client.errors().contains(kitchen));
    QVERIFY(client.errors().contains(otherKitchen));
    QCOMPARE(m_daemon->calls(), QStringList{"networks (none)"_s});
}

void ClientCommandsTest::unknownNameIsRefused()
{
    ClientProgram client({"connect"_s, "Cellar"_s});
    QCOMPARE(client.waitForExit(), 1);
    QCOMPARE(client.errors(), "There is no network \"Cellar\"; \"list\" tells which there are.\n"_s);
}

void ClientCommandsTest::credentialsComeFromStandardInput_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("call");
    const auto row = [](const char *line, const char *input, const char *call) {
        QTest::newRow(line) << QString::fromLatin1(input) << QString::fromLatin1(call);
    };
    row("register =a", "sweet potato\n", "registerWifi a, sweet potato");
    row("register =b", "no line end", "registerWifi b, no line end");
    row("register =c_none", "not asked for\n", "registerWifi c_none, (empty)");
    row("register-hidden Pantry =a", "blue cheese\n", "registerHiddenWifi Pantry, a, blue cheese");
    row("register-enterprise =a peap MSCHAPV2", "me\nsix dots\n",
        "registerWiFiWpa2Enterprise me, a, six dots, peap, MSCHAPV2");
    row("register-pin =a", "12345670\n", "registerWifiWps a, 12345670");
}

void ClientCommandsTest::credentialsComeFromStandardInput()
{
    QFETCH(const QString, input);
    QFETCH(const QString, call);
    ClientProgram client(QString::fromLatin1(QTest::currentDataTag()).split(QLatin1Char(' ')), input);
    QCOMPARE(client.waitForExit(), 0);
    QCOMPARE(m_daemon->calls(), QStringList{call});
    QCOMPARE(client.errors(), QString());
}

void ClientCommandsTest::credentialsAreNotTakenFromTheCommandLine()
{
    ClientProgram client({"register"_s, "=a"_s, "sweet potato"_s});
    QCOMPARE(client.waitForExit(), 2);
    QCOMPARE(client.errors(), "It is: register NETWORK\n"_s);
    QCOMPARE(m_daemon->calls(), QStringList());
}

void ClientCommandsTest::withoutTheCredentialNothingIsRegistered()
{
    ClientProgram client({"register"_s, "=a"_s});
    QCOMPARE(client.waitForExit(), 2);
    QCOMPARE(client.errors(), "No answer to the question \"Passphrase:\".\n"_s);
    QCOMPARE(m_daemon->calls(), QStringList());
}

static const Suite<ClientCommandsTest> clientCommandsTest;
#include "ClientCommandsTest.moc"
