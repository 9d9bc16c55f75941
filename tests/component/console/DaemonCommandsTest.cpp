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

QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

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
        words << (formWord == QLatin1String("NETWORK") ? text("=network")
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
    void numbersInTheListAreNetworks();
    void unknownNetworkIsNotAskedFor();
    void absentDaemonIsNamed();

private:
    bool type(const char *line) { return carryOut(m_commands->commands(), splitWords(text(line)).value()); }

    test_support::PrivateBus m_bus;
    QDBusConnection m_connection{QDBusConnection::connectToBus(m_bus.address(), text("commands"))};
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
    QFile interface(text(DAEMON_INTERFACE));
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
    const auto row = [](const char *line, const char *call) { QTest::newRow(line) << text(call); };
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
        QTest::newRow(line) << answer << text(event);
    };
    row("lock", false, "reply: getLockRegion false");
    row("region", text("SE"), "reply: getWifiRegion SE");
    row("hostname", QString(), "reply: getHostName (empty)");
    row("active", QStringList{text("Kitchen"), text("Wired")}, "reply: activeNetworks Kitchen, Wired");
    row("address =a", QVariantMap{{text("Method"), text("dhcp")}, {text("Address"), text("10.0.0.2")}},
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
    const QVariantMap wireless{{text("Name"), text("Kitchen")},
                               {text("Type"), text("wifi")},
                               {text("State"), text("online")},
                               {text("Security"), QStringList{text("psk")}},
                               {text("Strength"), QVariant::fromValue<uchar>(60)},
                               {text("Favorite"), true}};
    const QVariantMap wired{
        {text("Name"), text("Wired")}, {text("Type"), text("ethernet")}, {text("State"), text("ready")}};
    m_daemon->setAnswer(QVariantMap{{text("wifi_a"), wireless}, {text("ethernet_b"), wired}});
    QVERIFY(type("list"));
    QTRY_COMPARE(m_feed->events(),
                 (QStringList{text("reply: 1. Kitchen, online, signal 60, passphrase, known, wifi_a"),
                              text("reply: 2. Wired, ready, new, ethernet_b"), text("reply: 2 networks")}));
}

void DaemonCommandsTest::numbersInTheListAreNetworks()
{
    m_daemon->setAnswer(QVariantMap{{text("wifi_a"), QVariantMap()}, {text("wifi_b"), QVariantMap()}});
    QVERIFY(type("list"));
    QTRY_VERIFY(m_feed->events().contains(text("reply: 2 networks")));
    QVERIFY(type("connect 2"));
    QTRY_COMPARE(m_daemon->calls().last(), text("connect wifi_b"));
}

void DaemonCommandsTest::unknownNetworkIsNotAskedFor()
{
    QVERIFY(type("connect nowhere"));
    QVERIFY(type("power"));
    QTRY_COMPARE(m_daemon->calls(), QStringList{text("getWifiPower (none)")});
}

void DaemonCommandsTest::absentDaemonIsNamed()
{
    m_daemon.reset();
    QVERIFY(type("power"));
    QTRY_COMPARE(m_feed->events(),
                 QStringList{text("reply: getWifiPower failed: The network daemon is not running.")});
}

static const Suite<DaemonCommandsTest> daemonCommandsTest;
#include "DaemonCommandsTest.moc"
