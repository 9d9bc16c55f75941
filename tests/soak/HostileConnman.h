#pragma once

#include "RandomValues.h"
#include "RawPeer.h"

namespace soak {

/// Owns ConnMan's name and says what ConnMan never would.
class HostileConnman
{
public:
    HostileConnman(const QString &busAddress, quint32 seed);

    bool begin() { return m_peer.takeName("net.connman"); }
    void sendOne();
    /// All that the daemon may know of are gone.
    void removeAllServices();
    bool isConnected() const { return m_peer.isConnected(); }
    int waiting() const { return m_peer.waiting(); }
    int unanswered() const { return m_peer.waiting() + m_peer.lost(); }

private:
    GVariant *answer(const QByteArray &member);
    void changeProperty();
    void changeServices();
    void askAgent();

    RandomValues m_values;
    RandomValues m_answers; // of the peer's own thread
    RawPeer m_peer;
};

} // namespace soak
