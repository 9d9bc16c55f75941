// ConnMan's own command line client as the judge: it takes the simulated ConnMan for the real one.

#include "ChildProcess.h"
#include "DeviceFixture.h"
#include "EventWait.h"
#include "Suite.h"
#include "Text.h"
#include <QProcess>
#include <QTest>

using namespace test_support;
using namespace simulator_test;

namespace {
const QString cafeId = "wifi_020000000200_43616665_managed_none"_s;
const QString program = "connmanctl"_s;
const QString right = "right passphrase"_s;

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
    return m_simulator->addNetwork({{"ssid"_s, QString::fromLatin1(ssid)},
                                    {"security"_s, QString::fromLatin1(security)},
                                    {"passphrase"_s, right},
                                    {"hidden"_s, hidden},
                                    {"address"_s, "192.168.10.77"_s}});
}

void ConnmanctlTest::tellsTheState()
{
    QCOMPARE(run("state"), "  State = idle\n  OfflineMode = False\n  SessionMode = False\n"_s);
}

void ConnmanctlTest::listsTechnologies()
{
    QCOMPARE(run("technologies"), "/net/connman/technology/ethernet\n"
                                  "  Name = Wired\n"
                                  "  Type = ethernet\n"
                                  "  Powered = True\n"
                                  "  Connected = False\n"
                                  "  Tethering = False\n"
                                  "  TetheringFreq = 0\n"
                                  "/net/connman/technology/wifi\n"
                                  "  Name = WiFi\n"
                                  "  Type = wifi\n"
                                  "  Powered = True\n"
                                  "  Connected = False\n"
                                  "  Tethering = False\n"
                                  "  TetheringFreq = 2412\n"_s);
}

void ConnmanctlTest::switchesWifiOffAndOn()
{
    QCOMPARE(run("enable wifi"), "wifi is already enabled\n"_s);
    QCOMPARE(run("disable wifi"), "Disable wifi\n"_s);
    QCOMPARE(run("disable wifi"), "wifi is already disabled\n"_s);
    QCOMPARE(run("enable wifi"), "Enabled wifi\n"_s);
}

void ConnmanctlTest::scans()
{
    QCOMPARE(run("scan wifi"), "Scan completed for wifi\n"_s);
}

void ConnmanctlTest::listsServices()
{
    m_simulator->setCable(true);
    QVERIFY(m_client->waitForState(cableId, "online"_s));
    addNetwork("Home", "psk");
    QCOMPARE(run("services"),
             "*AO Wired                %1\n    Home                 %2\n"_s.arg(cableId, pskId));
}

void ConnmanctlTest::listsAService()
{
    addNetwork("Cafe", "none");
    QCOMPARE(run({"connect"_s, cafeId}), "Connected %1\n"_s.arg(cafeId));
    QVERIFY(m_client->waitForState(cafeId, "online"_s));
    QCOMPARE(run({"services"_s, cafeId}),
             "/net/connman/service/%1\n"
             "  Type = wifi\n"
             "  Security = [ none ]\n"
             "  State = online\n"
             "  Strength = 60\n"
             "  Favorite = True\n"
             "  Immutable = False\n"
             "  AutoConnect = True\n"
             "  Name = Cafe\n"
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
             "  Proxy = [  ]\n"
             "  Proxy.Configuration = [  ]\n"
             "  mDNS = False\n"
             "  mDNS.Configuration = False\n"
             "  Provider = [  ]\n"_s.arg(cafeId));
}

void ConnmanctlTest::tellsWhatItCannotDo_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("output");
    QTest::newRow("scan ethernet") << "scan ethernet"_s
                                   << "Error /net/connman/technology/ethernet: Not supported\n"_s;
    QTest::newRow("enable none") << "enable bluetooth"_s
                                 << "bluetooth is not available\n"_s;
    QTest::newRow("disconnect idle") << "disconnect "_s + pskId
                                     << "Error /net/connman/service/%1: Not connected\n"_s.arg(pskId);
    QTest::newRow("connect without an agent")
        << "connect "_s + pskId << "Error /net/connman/service/%1: Not registered\n"_s.arg(pskId);
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
    addNetwork("Cafe", "none");
    QCOMPARE(run({"connect"_s, cafeId}), "Connected %1\n"_s.arg(cafeId));
    QCOMPARE(run({"connect"_s, cafeId}), "Error /net/connman/service/%1: Already connected\n"_s.arg(cafeId));
    QCOMPARE(run({"disconnect"_s, cafeId}), "Disconnected %1\n"_s.arg(cafeId));
    QCOMPARE(run("services"), "*A  Cafe                 %1\n"_s.arg(cafeId));
}

void ConnmanctlTest::setsAStaticAddress()
{
    addNetwork("Cafe", "none");
    run({"connect"_s, cafeId});
    QCOMPARE(run({"config"_s, cafeId, "--ipv4"_s, "manual"_s, "10.0.0.9"_s, "255.0.0.0"_s, "10.0.0.1"_s}),
             QString());
    QCOMPARE(m_client->property(cafeId, "IPv4"_s),
             "{\"Address\": <\"10.0.0.9\">, \"Gateway\": <\"10.0.0.1\">, \"Method\": <\"manual\">, "
             "\"Netmask\": <\"255.0.0.0\">}"_s);
    QCOMPARE(run({"config"_s, cafeId, "--ipv4"_s, "manual"_s, "nonsense"_s}),
             "Error %1: Invalid arguments\n"_s.arg(cafeId));
}

void ConnmanctlTest::setsNameservers()
{
    addNetwork("Cafe", "none");
    QCOMPARE(run({"config"_s, cafeId, "--nameservers"_s, "9.9.9.9"_s, "1.1.1.1"_s}), QString());
    QCOMPARE(m_client->property(cafeId, "Nameservers.Configuration"_s), "[\"9.9.9.9\", \"1.1.1.1\"]"_s);
}

void ConnmanctlTest::forgetsANetwork()
{
    addNetwork("Cafe", "none");
    run({"connect"_s, cafeId});
    QCOMPARE(run({"config"_s, cafeId, "--remove"_s}), QString());
    QCOMPARE(m_client->property(cafeId, "Favorite"_s), "false"_s);
}

void ConnmanctlTest::asksForThePassphrase()
{
    addNetwork("Home", "psk");
    Connmanctl connmanctl;
    connmanctl.say("agent on"_s);
    QVERIFY2(connmanctl.waitFor("Agent registered"_s), qPrintable(connmanctl.output()));
    connmanctl.say("connect "_s + pskId);
    QVERIFY2(connmanctl.waitFor("Agent RequestInput %1\n"
                                "  Passphrase = [ Type=psk, Requirement=mandatory ]\n"_s.arg(pskId)),
             qPrintable(connmanctl.output()));
    connmanctl.say(right);
    QVERIFY2(connmanctl.waitFor("Connected "_s + pskId), qPrintable(connmanctl.output()));
}

void ConnmanctlTest::tellsOfAWrongPassphrase()
{
    addNetwork("Home", "psk");
    Connmanctl connmanctl;
    connmanctl.say("agent on"_s);
    QVERIFY(connmanctl.waitFor("Agent registered"_s));
    connmanctl.say("connect "_s + pskId);
    QVERIFY(connmanctl.waitFor("Passphrase?"_s));
    connmanctl.say("wrong passphrase"_s);
    QVERIFY2(connmanctl.waitFor("Agent ReportError %1\n  invalid-key"_s.arg(pskId)),
             qPrintable(connmanctl.output()));
    QVERIFY2(connmanctl.waitFor("Error /net/connman/service/%1: Input/output error"_s.arg(pskId)),
             qPrintable(connmanctl.output()));
}

void ConnmanctlTest::joinsAHiddenNetwork()
{
    addNetwork("Home", "psk", true);
    Connmanctl connmanctl;
    connmanctl.say("agent on"_s);
    QVERIFY(connmanctl.waitFor("Agent registered"_s));
    connmanctl.say("connect "_s + hiddenId);
    QVERIFY2(connmanctl.waitFor("Hidden SSID name?"_s), qPrintable(connmanctl.output()));
    connmanctl.say("Home"_s);
    QVERIFY2(connmanctl.waitFor("Passphrase?"_s), qPrintable(connmanctl.output()));
    connmanctl.say(right);
    QVERIFY2(connmanctl.waitFor("Connected "_s + hiddenId), qPrintable(connmanctl.output()));
    QVERIFY2(run("services").contains(pskId), qPrintable(run("services")));
}

void ConnmanctlTest::watchesServicesComeAndGo()
{
    Connmanctl connmanctl;
    connmanctl.say("monitor on"_s);
    connmanctl.say("state"_s);
    QVERIFY(connmanctl.waitFor("SessionMode = False"_s));
    addNetwork("Home", "psk");
    QVERIFY2(connmanctl.waitFor("Manager      ServicesChanged      = {\n"
                                "    Home                 %1\n}, {\n}"_s.arg(pskId)),
             qPrintable(connmanctl.output()));
    addNetwork("Cafe", "none");
    QVERIFY2(connmanctl.waitFor("unchanged                "_s + pskId), qPrintable(connmanctl.output()));
    m_simulator->removeNetwork("Home"_s);
    QVERIFY2(connmanctl.waitFor("removed                  /net/connman/service/"_s + pskId),
             qPrintable(connmanctl.output()));
}

static const Suite<ConnmanctlTest> connmanctlTest;
#include "ConnmanctlTest.moc"
