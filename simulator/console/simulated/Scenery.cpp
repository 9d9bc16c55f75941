#include "Scenery.h"

#include "DaemonSandbox.h"
#include "Feed.h"
#include "SimulatorClient.h"

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

struct Scenery::Parts
{
    explicit Parts(const QString &busAddress)
        : simulator(busAddress, test_support::SimulatorClient::Timings::Real)
    {
    }

    void addNetwork(Feed &feed, const QString &ssid, QVariantMap options);
    void switchConnman(const QString &what);

    test_support::SimulatorClient simulator;
};

Scenery::Scenery(const QString &busAddress, const QDBusConnection & /*connection*/)
    : m_parts(std::make_unique<Parts>(busAddress))
{
    connect(&m_parts->simulator, &test_support::SimulatorClient::spoke, this,
            [this](const QString &, const QVariantMap &request) { emit spoke(request); });
}

Scenery::~Scenery() = default;

bool Scenery::isReady() const
{
    return m_parts->simulator.isReady();
}

void Scenery::prepare(test_support::DaemonSandbox &sandbox)
{
    // ConnMan learns of an enterprise network's file there, and forgets the network with it.
    m_parts->simulator.setConnmanDirectory(sandbox.hostPath(QStringLiteral("/var/lib/connman")));
}

QStringList Scenery::opening()
{
    return {QStringLiteral("add Library"), QStringLiteral("add Kitchen \"sweet potato\""),
            QStringLiteral("daemon start")};
}

QString Scenery::greeting()
{
    return QStringLiteral("A printer is on the desk, with two networks in reach.");
}

void Scenery::Parts::addNetwork(Feed &feed, const QString &ssid, QVariantMap options)
{
    options.insert(QStringLiteral("ssid"), ssid);
    const QString identifier = simulator.addNetwork(options);
    feed.happened(QStringLiteral("air"), QStringLiteral("%1 is there as %2").arg(ssid, identifier));
}

void Scenery::Parts::switchConnman(const QString &what)
{
    if (what == QStringLiteral("restart")) {
        simulator.restartConnman();
    } else {
        simulator.setPresent(connman, what == QStringLiteral("start"));
    }
}

QVector<Command> Scenery::commands(Feed &feed)
{
    using Words = const QStringList &;
    return {
        command("add", "SSID", "put an open network on the air",
                [&](Words words) { m_parts->addNetwork(feed, words.at(0), options("none", "", {})); }),
        command("add", "SSID PASSPHRASE", "a WPA2 one",
                [&](Words words) {
                    m_parts->addNetwork(feed, words.at(0), options("psk", "passphrase", words.at(1)));
                }),
        command("add-hidden", "SSID PASSPHRASE", "a hidden one",
                [&](Words words) {
                    QVariantMap hidden = options("psk", "passphrase", words.at(1));
                    hidden.insert(QStringLiteral("hidden"), true);
                    m_parts->addNetwork(feed, words.at(0), hidden);
                }),
        command("add-enterprise", "SSID IDENTITY PASSWORD", "a WPA2-Enterprise one",
                [&](Words words) {
                    QVariantMap enterprise = options("ieee8021x", "passphrase", words.at(2));
                    enterprise.insert(QStringLiteral("identity"), words.at(1));
                    m_parts->addNetwork(feed, words.at(0), enterprise);
                }),
        command("add-wps", "SSID [PIN]", "one with WPS",
                [&](Words words) {
                    m_parts->addNetwork(feed, words.at(0), options("wps", "pin", words.value(1)));
                }),
        command("remove", "SSID", "take a network off the air for good",
                [&](Words words) { m_parts->simulator.removeNetwork(words.at(0)); }),
        command("reach", "SSID in|out", "carry the printer into a network's reach or out of it",
                [&](Words words) {
                    m_parts->simulator.setInReach(words.at(0), words.at(1) == QStringLiteral("in"));
                }),
        command("cable", "in|out", "plug the Ethernet cable in or pull it out",
                [&](Words words) { m_parts->simulator.setCable(words.at(0) == QStringLiteral("in")); }),
        command("connman", "start|stop|restart", "ConnMan comes, goes, or both",
                [&](Words words) { m_parts->switchConnman(words.at(0)); }),
    };
}
