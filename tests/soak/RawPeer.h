#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <mutex>
#include <QSet>

struct _GDBusConnection;
struct _GDBusMessage;
struct _GVariant;

namespace soak {

/// Where a call goes, or what a signal is from.
struct Member
{
    QByteArray path;
    QByteArray interface;
    QByteArray name;
};

/// A peer on the bus that sends whatever the wire allows (Qt's own client refuses much of it) and counts what
/// its calls are answered with. It works on a thread of its own; wait for it with the event loop, which it
/// wakes.
class RawPeer
{
public:
    /// Answers a call of that member to this peer: the reply's arguments, or null to refuse it. Runs on the
    /// peer's own thread, one call at a time.
    using Answer = std::function<_GVariant *(const QByteArray &member)>;

    explicit RawPeer(const QString &busAddress, Answer answer = {});
    ~RawPeer();
    RawPeer(const RawPeer &) = delete;
    RawPeer &operator=(const RawPeer &) = delete;

    bool isConnected() const;
    bool takeName(const QByteArray &name);

    /// `withDescriptor`: a file descriptor travels with the message.
    void call(const QByteArray &destination, const Member &member, _GVariant *arguments,
              bool withDescriptor = false);
    /// To everybody, or to `destination` alone.
    void emitSignal(const Member &member, _GVariant *arguments, const QByteArray &destination = {});

    /// Calls without an answer so far.
    int waiting() const;
    /// Those that the bus answered in place of a callee that had gone.
    int lost() const;

private:
    static _GDBusMessage *filter(_GDBusConnection *connection, _GDBusMessage *message, int incoming,
                                 void *peer);
    void answerCall(_GDBusMessage *call);
    bool takeReply(_GDBusMessage *reply);

    struct Close
    {
        void operator()(_GDBusConnection *connection) const;
    };
    Answer m_answer;
    mutable std::mutex m_mutex;
    QSet<quint32> m_waiting; // serials
    int m_lost = 0;
    std::unique_ptr<_GDBusConnection, Close> m_connection; // ends first
    unsigned m_filter = 0;
};

} // namespace soak
