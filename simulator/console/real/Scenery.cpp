#include "Scenery.h"

#include "DaemonSandbox.h"
#include "Feed.h"
#include "Surroundings.h"
#include <QDBusConnectionInterface>

struct Scenery::Parts
{
    Parts(const QString &busAddress, const QDBusConnection &connection)
        : bus(connection)
        , surroundings(busAddress, connection)
    {
    }

    void switchConnman(Feed &feed, const QString &what);

    QDBusConnection bus;
    Surroundings surroundings;
};

Scenery::Scenery(const QString &busAddress, const QDBusConnection &connection)
    : m_parts(std::make_unique<Parts>(busAddress, connection))
{
    connect(&m_parts->surroundings.speech(), &test_support::SpeechRecord::added, this, &Scenery::spoke);
}

Scenery::~Scenery() = default;

bool Scenery::isReady() const
{
    return true;
}

void Scenery::prepare(test_support::DaemonSandbox &sandbox)
{
    sandbox.commands().script(QStringLiteral("iw list"), {});
}

QStringList Scenery::opening()
{
    return {QStringLiteral("dhcp start"), QStringLiteral("connman start"), QStringLiteral("daemon start"),
            QStringLiteral("cable in")};
}

QString Scenery::greeting()
{
    return QStringLiteral(
        "A printer is on the desk, with the real ConnMan in it and a network cable plugged in.");
}

void Scenery::Parts::switchConnman(Feed &feed, const QString &what)
{
    if (what != QStringLiteral("start")) {
        surroundings.stopConnman();
    } else if (bus.interface()->isServiceRegistered(QStringLiteral("net.connman"))) {
        feed.tell(QStringLiteral("It is running already."));
        return;
    }
    if (what != QStringLiteral("stop")) {
        surroundings.startConnman();
    }
}

QVector<Command> Scenery::commands(Feed &feed)
{
    using Words = const QStringList &;
    return {
        command("cable", "in|out", "plug the Ethernet cable in or pull it out",
                [&](Words words) {
                    words.at(0) == QStringLiteral("in") ? m_parts->surroundings.plugCable()
                                                        : m_parts->surroundings.unplugCable();
                }),
        command("dhcp", "start|stop", "the DHCP server at the other end of the cable comes or goes",
                [&](Words words) {
                    words.at(0) == QStringLiteral("start") ? m_parts->surroundings.startDhcpServer()
                                                           : m_parts->surroundings.stopDhcpServer();
                }),
        command("connman", "start|stop|restart", "ConnMan comes, goes, or both",
                [&](Words words) { m_parts->switchConnman(feed, words.at(0)); }),
    };
}
