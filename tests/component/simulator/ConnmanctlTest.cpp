// ConnMan's own command line client as the judge: it takes the simulated ConnMan for the real one.

#include "ChildProcess.h"
#include "DeviceFixture.h"
#include "EventWait.h"
#include "Suite.h"
#include <QProcess>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString program = QStringLiteral("connmanctl");
const QString homeId = QStringLiteral("wifi_020000000200_486f6d65_managed_psk");
const QString openId = QStringLiteral("wifi_020000000200_4f70656e_managed_none");
const QString hiddenId = QStringLiteral("wifi_020000000200_hidden_managed_psk");
const QString cableId = QStringLiteral("ethernet_020000000100_cable");
const QString right = QStringLiteral("right passphrase");

/// connmanctl between a pipe in and a pipe out.
class Connmanctl
{
public:
    explicit Connmanctl(const QStringList &arguments = {})
    {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(program, arguments);
    }
    ~Connmanctl() { stopProcess(m_process); }

    /// Its whole output, once it has ended.
    QString finish()
    {
        m_process.waitForFinished(eventTimeoutMs);
        m_output += QString::fromUtf8(m_process.readAll());
        return m_output;
    }
    void say(const QString &line) { m_process.write(line.toUtf8() + '\n'); }
    bool waitFor(const QString &text)
    {
        return waitUntil([this, &text] {
            m_output += QString::fromUtf8(m_process.readAll());
            return m_output.contains(text);
        });
    }
    QString output() const { return m_output; }

private:
    ChildProcess m_process;
    QString m_output;
};

QString run(const QStringList &arguments)
{
    return Connmanctl(arguments).finish();
}

QString run(const char *arguments)
{
    return run(QString::fromLatin1(arguments).split(QLatin1Char(' ')));
}
} // namespace

class ConnmanctlTest : public DeviceFixture
{
    Q_OBJECT

private slots:
    void tellsTheState();
    void listsTechnologies();
    void switchesWifiOffAndOn();
    void scans();
    void listsServices();
    void listsAService();
    void tellsWhatItCannotDo_data();
    void tellsWhatItCannotDo();
    void connectsAnOpenNetwork();
    void setsAStaticAddress();
    void setsNameservers();
    void forgetsANetwork();
    void asksForThePassphrase();
    void tellsOfAWrongPassphrase();
    void joinsAHiddenNetwork();
    void watchesServicesComeAndGo();

private:
    QString addNetwork(const char *ssid, const char *security, bool hidden = false);
};

QString ConnmanctlTest::addNetwork(const char *ssid, const char *security, bool hidden)
{
    return m_simulator->addNetwork({{QStringLiteral("ssid"), QString::fromLatin1(ssid)},
                                    {QStringLiteral("security"), QString::fromLatin1(security)},
                                    {QStringLiteral("passphrase"), right},
                                    {QStringLiteral("hidden"), hidden},
                                    {QStringLiteral("address"), QStringLiteral("192.168.10.77")}});
}

void ConnmanctlTest::tellsTheState()
{
    QCOMPARE(run("state"), QStringLiteral("  State = idle\n  OfflineMode = False\n  SessionMode = False\n"));
}

void ConnmanctlTest::listsTechnologies()
{
    QCOMPARE(run("technologies"), QStringLiteral("/net/connman/technology/ethernet\n"
                                                 "  Name = Wired\n"
                                                 "  Type = ethernet\n"
                                                 "  Powered = True\n"
                                                 "  Connected = False\n"
                                                 "  Tethering = False\n"
                                                 "  TetheringFreq = 2412\n"
                                                 "/net/connman/technology/wifi\n"
                                                 "  Name = WiFi\n"
                                                 "  Type = wifi\n"
                                                 "  Powered = True\n"
                                                 "  Connected = False\n"
                                                 "  Tethering = False\n"
                                                 "  TetheringFreq = 2412\n"));
}

void ConnmanctlTest::switchesWifiOffAndOn()
{
    QCOMPARE(run("enable wifi"), QStringLiteral("wifi is already enabled\n"));
    QCOMPARE(run("disable wifi"), QStringLiteral("Disable wifi\n"));
    QCOMPARE(run("disable wifi"), QStringLiteral("wifi is already disabled\n"));
    QCOMPARE(run("enable wifi"), QStringLiteral("Enabled wifi\n"));
}

void ConnmanctlTest::scans()
{
    QCOMPARE(run("scan wifi"), QStringLiteral("Scan completed for wifi\n"));
}

void ConnmanctlTest::listsServices()
{
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, QStringLiteral("online")));
    addNetwork("Home", "psk");
    QCOMPARE(
        run("services"),
        QStringLiteral("*AO Wired                %1\n    Home                 %2\n").arg(cableId, homeId));
}

void ConnmanctlTest::listsAService()
{
    addNetwork("Open", "none");
    QCOMPARE(run({QStringLiteral("connect"), openId}), QStringLiteral("Connected %1\n").arg(openId));
    QVERIFY(m_client->waitForState(openId, QStringLiteral("online")));
    QCOMPARE(
        run({QStringLiteral("services"), openId}),
        QStringLiteral("/net/connman/service/%1\n"
                       "  Type = wifi\n"
                       "  Security = [ none ]\n"
                       "  State = online\n"
                       "  Strength = 60\n"
                       "  Favorite = True\n"
                       "  Immutable = False\n"
                       "  AutoConnect = True\n"
                       "  Name = Open\n"
                       "  Ethernet = [ Address=02:00:00:00:02:00, Interface=wlan0, MTU=1500, Method=auto ]\n"
                       "  IPv4 = [ Address=192.168.10.77, Gateway=192.168.10.1, Method=dhcp, "
                       "Netmask=255.255.255.0 ]\n"
                       "  IPv4.Configuration = [ Method=dhcp ]\n"
                       "  IPv6 = [  ]\n"
                       "  IPv6.Configuration = [ Method=auto, Privacy=disabled ]\n"
                       "  Nameservers = [ 192.168.10.1 ]\n"
                       "  Nameservers.Configuration = [  ]\n"
                       "  Timeservers = [  ]\n"
                       "  Timeservers.Configuration = [  ]\n"
                       "  Domains = [  ]\n"
                       "  Domains.Configuration = [  ]\n"
                       "  Proxy = [ Method=direct ]\n"
                       "  Proxy.Configuration = [  ]\n"
                       "  mDNS = False\n"
                       "  mDNS.Configuration = False\n"
                       "  Provider = [  ]\n")
            .arg(openId));
}

void ConnmanctlTest::tellsWhatItCannotDo_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("output");
    QTest::newRow("scan ethernet") << QStringLiteral("scan ethernet")
                                   << QStringLiteral(
                                          "Error /net/connman/technology/ethernet: Not supported\n");
    QTest::newRow("enable none") << QStringLiteral("enable bluetooth")
                                 << QStringLiteral("bluetooth is not available\n");
    QTest::newRow("disconnect idle")
        << QStringLiteral("disconnect ") + homeId
        << QStringLiteral("Error /net/connman/service/%1: Not connected\n").arg(homeId);
    QTest::newRow("connect without an agent")
        << QStringLiteral("connect ") + homeId
        << QStringLiteral("Error /net/connman/service/%1: Not registered\n").arg(homeId);
}

void ConnmanctlTest::tellsWhatItCannotDo()
{
    QFETCH(QString, arguments);
    QFETCH(QString, output);
    addNetwork("Home", "psk");
    QCOMPARE(run(arguments.split(QLatin1Char(' '))), output);
}

void ConnmanctlTest::connectsAnOpenNetwork()
{
    addNetwork("Open", "none");
    QCOMPARE(run({QStringLiteral("connect"), openId}), QStringLiteral("Connected %1\n").arg(openId));
    QCOMPARE(run({QStringLiteral("connect"), openId}),
             QStringLiteral("Error /net/connman/service/%1: Already connected\n").arg(openId));
    QCOMPARE(run({QStringLiteral("disconnect"), openId}), QStringLiteral("Disconnected %1\n").arg(openId));
    QCOMPARE(run("services"), QStringLiteral("*A  Open                 %1\n").arg(openId));
}

void ConnmanctlTest::setsAStaticAddress()
{
    addNetwork("Open", "none");
    run({QStringLiteral("connect"), openId});
    QCOMPARE(run({QStringLiteral("config"), openId, QStringLiteral("--ipv4"), QStringLiteral("manual"),
                  QStringLiteral("10.0.0.9"), QStringLiteral("255.0.0.0"), QStringLiteral("10.0.0.1")}),
             QString());
    QCOMPARE(
        m_client->property(openId, QStringLiteral("IPv4")),
        QStringLiteral("{\"Address\": <\"10.0.0.9\">, \"Gateway\": <\"10.0.0.1\">, \"Method\": <\"manual\">, "
                       "\"Netmask\": <\"255.0.0.0\">}"));
    QCOMPARE(run({QStringLiteral("config"), openId, QStringLiteral("--ipv4"), QStringLiteral("manual"),
                  QStringLiteral("nonsense")}),
             QStringLiteral("Error %1: Invalid arguments\n").arg(openId));
}

void ConnmanctlTest::setsNameservers()
{
    addNetwork("Open", "none");
    QCOMPARE(run({QStringLiteral("config"), openId, QStringLiteral("--nameservers"),
                  QStringLiteral("9.9.9.9"), QStringLiteral("1.1.1.1")}),
             QString());
    QCOMPARE(m_client->property(openId, QStringLiteral("Nameservers.Configuration")),
             QStringLiteral("[\"9.9.9.9\", \"1.1.1.1\"]"));
}

void ConnmanctlTest::forgetsANetwork()
{
    addNetwork("Open", "none");
    run({QStringLiteral("connect"), openId});
    QCOMPARE(run({QStringLiteral("config"), openId, QStringLiteral("--remove")}), QString());
    QCOMPARE(m_client->property(openId, QStringLiteral("Favorite")), QStringLiteral("false"));
}

void ConnmanctlTest::asksForThePassphrase()
{
    addNetwork("Home", "psk");
    Connmanctl connmanctl;
    connmanctl.say(QStringLiteral("agent on"));
    QVERIFY2(connmanctl.waitFor(QStringLiteral("Agent registered")), qPrintable(connmanctl.output()));
    connmanctl.say(QStringLiteral("connect ") + homeId);
    QVERIFY2(connmanctl.waitFor(QStringLiteral("Agent RequestInput %1\n"
                                               "  Passphrase = [ Type=psk, Requirement=mandatory ]\n")
                                    .arg(homeId)),
             qPrintable(connmanctl.output()));
    connmanctl.say(right);
    QVERIFY2(connmanctl.waitFor(QStringLiteral("Connected ") + homeId), qPrintable(connmanctl.output()));
}

void ConnmanctlTest::tellsOfAWrongPassphrase()
{
    addNetwork("Home", "psk");
    Connmanctl connmanctl;
    connmanctl.say(QStringLiteral("agent on"));
    QVERIFY(connmanctl.waitFor(QStringLiteral("Agent registered")));
    connmanctl.say(QStringLiteral("connect ") + homeId);
    QVERIFY(connmanctl.waitFor(QStringLiteral("Passphrase?")));
    connmanctl.say(QStringLiteral("wrong passphrase"));
    QVERIFY2(connmanctl.waitFor(QStringLiteral("Agent ReportError %1\n  invalid-key").arg(homeId)),
             qPrintable(connmanctl.output()));
    QVERIFY2(
        connmanctl.waitFor(QStringLiteral("Error /net/connman/service/%1: Input/output error").arg(homeId)),
        qPrintable(connmanctl.output()));
}

void ConnmanctlTest::joinsAHiddenNetwork()
{
    addNetwork("Home", "psk", true);
    Connmanctl connmanctl;
    connmanctl.say(QStringLiteral("agent on"));
    QVERIFY(connmanctl.waitFor(QStringLiteral("Agent registered")));
    connmanctl.say(QStringLiteral("connect ") + hiddenId);
    QVERIFY2(connmanctl.waitFor(QStringLiteral("Hidden SSID name?")), qPrintable(connmanctl.output()));
    connmanctl.say(QStringLiteral("Home"));
    QVERIFY2(connmanctl.waitFor(QStringLiteral("Passphrase?")), qPrintable(connmanctl.output()));
    connmanctl.say(right);
    QVERIFY2(connmanctl.waitFor(QStringLiteral("Connected ") + hiddenId), qPrintable(connmanctl.output()));
    QVERIFY2(run("services").contains(homeId), qPrintable(run("services")));
}

void ConnmanctlTest::watchesServicesComeAndGo()
{
    Connmanctl connmanctl;
    connmanctl.say(QStringLiteral("monitor on"));
    connmanctl.say(QStringLiteral("state"));
    QVERIFY(connmanctl.waitFor(QStringLiteral("SessionMode = False")));
    addNetwork("Home", "psk");
    QVERIFY2(connmanctl.waitFor(QStringLiteral("Manager      ServicesChanged      = {\n"
                                               "    Home                 %1\n}, {\n}")
                                    .arg(homeId)),
             qPrintable(connmanctl.output()));
    addNetwork("Open", "none");
    QVERIFY2(connmanctl.waitFor(QStringLiteral("unchanged                ") + homeId),
             qPrintable(connmanctl.output()));
    m_simulator->removeNetwork(QStringLiteral("Home"));
    QVERIFY2(connmanctl.waitFor(QStringLiteral("removed                  /net/connman/service/") + homeId),
             qPrintable(connmanctl.output()));
}

static const Suite<ConnmanctlTest> suite;
#include "ConnmanctlTest.moc"
