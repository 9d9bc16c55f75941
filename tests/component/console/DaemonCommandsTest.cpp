// The console's commands that are calls to the daemon: all its operations, and their replies as lines.
#include "DaemonCommands.h"
#include "FakeDaemon.h"
#include "Feed.h"
#include "NetworkNames.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "Text.h"
#include "Words.h"
#include <memory>
#include <QFile>
#include <QTest>
#include <QXmlStreamReader>

namespace {

/// "method(types)" of every method in an introspection text, sorted.
QStringList methods(const QByteArray &xml)
{
    QStringList signatures;
    QString in;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        reader.readNext();
        const auto attribute = [&reader](const char *name) {
            return reader.attributes().value(QLatin1String(name)).toString();
        };
        if (reader.isStartElement() && reader.name() == QLatin1String("method")) {
            signatures << attribute("name");
            in.clear();
        } else if (reader.isStartElement() && attribute("direction") == QLatin1String("in")) {
            in += attribute("type");
        } else if (reader.isEndElement() && reader.name() == QLatin1String("method")) {
            signatures.last() += "(%1)"_s.arg(in);
        }
    }
    signatures.sort();
    return signatures;
}

/// Words that fit a command's form.
QStringList fittingWords(const Command &command)
{
    QStringList words;
    for (const QString &formWord : command.formWords()) {
        words << (formWord == QLatin1String("NETWORK") ? "=network"_s
                                                       : formWord.section(QLatin1Char('|'), 0, 0));
    }
    return words;
}

} // namespace

class DaemonCommandsTest : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void everyOperationHasACommand();
    void everyCommandIsExplained();
    void typedWordsAreTheArguments_data();
    void typedWordsAreTheArguments();
    void replyIsShown_data();
    void replyIsShown();
    void networksAreNumbered();
    void networksAreCounted_data();
    void networksAreCounted();
    void numbersInTheListAreNetworks();
    void unknownNetworkIsNotAskedFor();
    void absentDaemonIsNamed();

private:
    bool type(const char *line)
    {
        return carryOut(m_commands->commands(), splitWords(QString::fromLatin1(line)).value());
    }

    test_support::PrivateBus m_bus;
    QDBusConnection m_connection{QDBusConnection::connectToBus(m_bus.address(), "commands"_s)};
    std::unique_ptr<FakeDaemon> m_daemon;
    std::unique_ptr<Feed> m_feed;
    std::unique_ptr<NetworkNames> m_names;
    std::unique_ptr<DaemonCommands> m_commands;
};

void DaemonCommandsTest::init()
{
    m_daemon.reset(); // its name is taken until then
    m_daemon = std::make_unique<FakeDaemon>(m_bus.address());
    QVERIFY(m_daemon->isReady());
    m_feed = std::make_unique<Feed>();
    m_names = std::make_unique<NetworkNames>();
    m_commands = std::make_unique<DaemonCommands>(m_connection, *m_names, *m_feed);
}

void DaemonCommandsTest::everyOperationHasACommand()
{
    QFile interface(QStringLiteral(DAEMON_INTERFACE));
    QVERIFY(interface.open(QIODevice::ReadOnly));
    const QStringList expected = methods(interface.readAll());
    QCOMPARE(expected.size(), 34);
    for (const Command &command : m_commands->commands()) {
        command.run(fittingWords(command));
    }
    QTRY_VERIFY(!m_commands->isBusy());
    QStringList called = m_daemon->signatures();
    called.removeDuplicates();
    called.sort();
    QCOMPARE(called, expected);
}

void DaemonCommandsTest::everyCommandIsExplained()
{
    for (const Command &command : m_commands->commands()) {
        QVERIFY2(!command.help.isEmpty(), qPrintable(command.usage()));
        QVERIFY2(command.fits(fittingWords(command)), qPrintable(command.usage()));
    }
}

void DaemonCommandsTest::typedWordsAreTheArguments_data()
{
    QTest::addColumn<QString>("call");
    const auto row = [](const char *line, const char *call) {
        QTest::newRow(line) << QString::fromLatin1(call);
    };
    row("register =a \"sweet potato\"", "registerWifi a, sweet potato");
    row("register =a", "registerWifi a, (empty)");
    row("register-hidden Pantry =a \"blue cheese\"", "registerHiddenWifi Pantry, a, blue cheese");
    row("register-enterprise me =a secret peap MSCHAPV2",
        "registerWiFiWpa2Enterprise me, a, secret, peap, MSCHAPV2");
    row("register-wps =a", "registerWifiWps a");
    row("register-pin =a 12345670", "registerWifiWps a, 12345670");
    row("address =a", "getConfiguration a");
    row("address =a dhcp", "configure a, dhcp");
    row("address =a manual 10.0.0.2 255.0.0.0 10.0.0.1",
        "configure a, manual, 10.0.0.2, 255.0.0.0, 10.0.0.1");
    row("nameservers =a", "getNameservers a");
    row("nameservers =a none", "setNameservers a, (none)");
    row("nameservers =a 9.9.9.9 1.1.1.1", "setNameservers a, 9.9.9.9, 1.1.1.1");
    row("power on", "setWifiPower true");
    row("lock off", "setLockRegion false");
    row("region SE", "setWifiRegion SE");
    row("connect =", "connect (empty)");
}

void DaemonCommandsTest::typedWordsAreTheArguments()
{
    QFETCH(const QString, call);
    QVERIFY(type(QTest::currentDataTag()));
    QTRY_COMPARE(m_daemon->calls(), QStringList{call});
}

void DaemonCommandsTest::replyIsShown_data()
{
    QTest::addColumn<QVariant>("answer");
    QTest::addColumn<QString>("event");
    const auto row = [](const char *line, const QVariant &answer, const char *event) {
        QTest::newRow(line) << answer << QString::fromLatin1(event);
    };
    row("lock", false, "reply: getLockRegion false");
    row("region", "SE"_s, "reply: getWifiRegion SE");
    row("hostname", QString(), "reply: getHostName (empty)");
    row("active", QStringList{"Kitchen"_s, "Wired"_s}, "reply: activeNetworks Kitchen, Wired");
    row("address =a", QVariantMap{{"Method"_s, "dhcp"_s}, {"Address"_s, "10.0.0.2"_s}},
        "reply: getConfiguration\n  Address: 10.0.0.2\n  Method: dhcp");
}

void DaemonCommandsTest::replyIsShown()
{
    QFETCH(const QVariant, answer);
    QFETCH(const QString, event);
    m_daemon->setAnswer(answer);
    QVERIFY(type(QTest::currentDataTag()));
    QTRY_COMPARE(m_feed->events(), QStringList{event});
}

void DaemonCommandsTest::networksAreNumbered()
{
    const QVariantMap wireless{{"Name"_s, "Kitchen"_s},
                               {"Type"_s, "wifi"_s},
                               {"State"_s, "online"_s},
                               {"Security"_s, QStringList{"psk"_s}},
                               {"Strength"_s, QVariant::fromValue<uchar>(60)},
                               {"Favorite"_s, true}};
    const QVariantMap wired{{"Name"_s, "Wired"_s}, {"Type"_s, "ethernet"_s}, {"State"_s, "ready"_s}};
    m_daemon->setAnswer(QVariantMap{{"wifi_a"_s, wireless}, {"ethernet_b"_s, wired}});
    QVERIFY(type("list"));
    QTRY_COMPARE(m_feed->events(),
                 (QStringList{"reply: 1. Kitchen, online, signal 60, passphrase, known, wifi_a"_s,
                              "reply: 2. Wired, ready, new, ethernet_b"_s, "reply: 2 networks"_s}));
}

void DaemonCommandsTest::networksAreCounted_data()
{
    QTest::addColumn<QVariantMap>("networks");
    QTest::addColumn<QString>("count");
    QTest::newRow("none") << QVariantMap() << "reply: 0 networks"_s;
    QTest::newRow("one") << QVariantMap{{"wifi_a"_s, QVariantMap()}} << "reply: 1 network"_s;
}

void DaemonCommandsTest::networksAreCounted()
{
    QFETCH(const QVariantMap, networks);
    QFETCH(const QString, count);
    m_daemon->setAnswer(networks);
    QVERIFY(type("list"));
    QTRY_VERIFY(m_feed->events().contains(count));
}

void DaemonCommandsTest::numbersInTheListAreNetworks()
{
    m_daemon->setAnswer(QVariantMap{{"wifi_a"_s, QVariantMap()}, {"wifi_b"_s, QVariantMap()}});
    QVERIFY(type("list"));
    QTRY_VERIFY(m_feed->events().contains("reply: 2 networks"_s));
    QVERIFY(type("connect 2"));
    QTRY_COMPARE(m_daemon->calls().last(), "connect wifi_b"_s);
}

void DaemonCommandsTest::unknownNetworkIsNotAskedFor()
{
    QVERIFY(type("connect nowhere"));
    QVERIFY(type("power"));
    QTRY_COMPARE(m_daemon->calls(), QStringList{"getWifiPower (none)"_s});
}

void DaemonCommandsTest::absentDaemonIsNamed()
{
    m_daemon.reset();
    QVERIFY(type("power"));
    QTRY_COMPARE(m_feed->events(),
                 QStringList{"reply: getWifiPower failed: The network daemon is not running."_s});
}

static const Suite<DaemonCommandsTest> daemonCommandsTest;
#include "DaemonCommandsTest.moc"
