#pragma once

#include "RandomValues.h"
#include "RawPeer.h"

namespace soak {

/// A client of the daemon that knows its interface and respects nothing of it.
class HostileClient
{
public:
    HostileClient(const QString &busAddress, quint32 seed);

    void sendOne();
    bool isConnected() const { return m_peer.isConnected(); }
    int waiting() const { return m_peer.waiting(); }
    int unanswered() const { return m_peer.waiting() + m_peer.lost(); }

private:
    void callAsItShould();
    void callWithOddArguments();
    void callSomethingUnknown();
    void callStandardInterface();
    void callAgent();
    void forgeSignal();
    void send(const Member &member, GVariant *arguments);

    RawPeer m_peer;
    RandomValues m_values;
};

} // namespace soak
