#include "SimulatedSurroundings.h"

#include "DaemonSandbox.h"
#include "Feed.h"

namespace {

const QString connman = QStringLiteral("net.connman");

QVariantMap options(const char *security, const char *secretKey, const QString &secret)
{
    QVariantMap map{{QStringLiteral("security"), QString::fromLatin1(security)}};
    if (!secret.isEmpty()) {
        map.insert(QString::fromLatin1(secretKey), secret);
    }
    return map;
}

} // namespace

SimulatedSurroundings::SimulatedSurroundings(const QString &busAddress)
    : m_simulator(busAddress, test_support::SimulatorClient::Timings::Real)
{
    connect(&m_simulator, &test_support::SimulatorClient::spoke, this,
            [this](const QString &, const QVariantMap &request) { emit spoke(request); });
}

void SimulatedSurroundings::prepare(test_support::DaemonSandbox &sandbox)
{
    // ConnMan learns of an enterprise network's file there, and forgets the network with it.
    m_simulator.setConnmanDirectory(sandbox.hostPath(QStringLiteral("/var/lib/connman")));
}

QStringList SimulatedSurroundings::scenery() const
{
    return {QStringLiteral("add Library"), QStringLiteral("add Kitchen \"sweet potato\""),
            QStringLiteral("daemon start")};
}

QString SimulatedSurroundings::greeting() const
{
    return QStringLiteral("A printer is on the desk, with two networks in reach.");
}

void SimulatedSurroundings::addNetwork(Feed &feed, const QString &ssid, QVariantMap options)
{
    options.insert(QStringLiteral("ssid"), ssid);
    const QString identifier = m_simulator.addNetwork(options);
    feed.happened(QStringLiteral("air"), QStringLiteral("%1 is there as %2").arg(ssid, identifier));
}

void SimulatedSurroundings::switchConnman(const QString &what)
{
    if (what == QStringLiteral("restart")) {
        m_simulator.restartConnman();
    } else {
        m_simulator.setPresent(connman, what == QStringLiteral("start"));
    }
}

QVector<Command> SimulatedSurroundings::commands(Feed &feed)
{
    using Words = const QStringList &;
    return {
        command("add", "SSID", "put an open network on the air",
                [&](Words words) { addNetwork(feed, words.at(0), options("none", "", {})); }),
        command(
            "add", "SSID PASSPHRASE", "a WPA2 one",
            [&](Words words) { addNetwork(feed, words.at(0), options("psk", "passphrase", words.at(1))); }),
        command("add-hidden", "SSID PASSPHRASE", "a hidden one",
                [&](Words words) {
                    QVariantMap hidden = options("psk", "passphrase", words.at(1));
                    hidden.insert(QStringLiteral("hidden"), true);
                    addNetwork(feed, words.at(0), hidden);
                }),
        command("add-enterprise", "SSID IDENTITY PASSWORD", "a WPA2-Enterprise one",
                [&](Words words) {
                    QVariantMap enterprise = options("ieee8021x", "passphrase", words.at(2));
                    enterprise.insert(QStringLiteral("identity"), words.at(1));
                    addNetwork(feed, words.at(0), enterprise);
                }),
        command("add-wps", "SSID [PIN]", "one with WPS",
                [&](Words words) { addNetwork(feed, words.at(0), options("wps", "pin", words.value(1))); }),
        command("remove", "SSID", "take a network off the air for good",
                [&](Words words) { m_simulator.removeNetwork(words.at(0)); }),
        command(
            "reach", "SSID in|out", "carry the printer into a network's reach or out of it",
            [&](Words words) { m_simulator.setInReach(words.at(0), words.at(1) == QStringLiteral("in")); }),
        command("cable", "in|out", "plug the Ethernet cable in or pull it out",
                [&](Words words) { m_simulator.setCable(words.at(0) == QStringLiteral("in")); }),
        command("connman", "start|stop|restart", "ConnMan comes, goes, or both",
                [&](Words words) { switchConnman(words.at(0)); }),
    };
}
