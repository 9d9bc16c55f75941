#pragma once

#include "SpeechService.h"
#include "Surroundings.h"
#include "WiredLink.h"
#include <QDBusConnection>

/// The real ConnMan on a real cable with a DHCP server at its other end. There is no WLAN. Only inside the
/// private world of tests/wired/in-world.
class WiredSurroundings : public Surroundings
{
    Q_OBJECT
public:
    explicit WiredSurroundings(const QDBusConnection &bus);

    bool isReady() const override { return true; }
    void prepare(test_support::DaemonSandbox &sandbox) override;
    QVector<Command> commands(Feed &feed) override;
    QStringList scenery() const override;
    QString greeting() const override;

private:
    void switchConnman(Feed &feed, const QString &what);

    SpeechService m_speech;
    WiredLink m_link;
};
