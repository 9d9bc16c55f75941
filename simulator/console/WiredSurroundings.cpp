#include "WiredSurroundings.h"

#include "DaemonSandbox.h"
#include "Feed.h"

WiredSurroundings::WiredSurroundings(const QDBusConnection &bus)
    : m_speech(bus)
    , m_link(bus)
{
    connect(&m_speech, &SpeechService::spoke, this, &Surroundings::spoke);
}

void WiredSurroundings::prepare(test_support::DaemonSandbox &sandbox)
{
    sandbox.commands().script(QStringLiteral("iw list"), {});
}

QStringList WiredSurroundings::scenery() const
{
    return {QStringLiteral("dhcp start"), QStringLiteral("connman start"), QStringLiteral("daemon start"),
            QStringLiteral("cable in")};
}

QString WiredSurroundings::greeting() const
{
    return QStringLiteral(
        "A printer is on the desk, with the real ConnMan in it and a network cable plugged in.");
}

void WiredSurroundings::switchConnman(Feed &feed, const QString &what)
{
    if (what != QStringLiteral("start")) {
        m_link.stopConnman();
    } else if (m_link.isConnmanRunning()) {
        feed.tell(QStringLiteral("It is running already."));
        return;
    }
    if (what != QStringLiteral("stop")) {
        m_link.startConnman();
    }
}

QVector<Command> WiredSurroundings::commands(Feed &feed)
{
    using Words = const QStringList &;
    return {
        command("cable", "in|out", "plug the Ethernet cable in or pull it out",
                [&](Words words) {
                    words.at(0) == QStringLiteral("in") ? m_link.plugCable() : m_link.unplugCable();
                }),
        command("dhcp", "start|stop", "the DHCP server at the other end of the cable comes or goes",
                [&](Words words) {
                    words.at(0) == QStringLiteral("start") ? m_link.startDhcpServer()
                                                           : m_link.stopDhcpServer();
                }),
        command("connman", "start|stop|restart", "ConnMan comes, goes, or both",
                [&](Words words) { switchConnman(feed, words.at(0)); }),
    };
}
