#pragma once

#include "Command.h"
#include <memory>
#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

class Feed;

namespace test_support {
class DaemonSandbox;
}

/// What is around the printer: ConnMan with its networks, and the speech service. Simulated, or real with a
/// cable for a network, as the console is linked.
class Scenery : public QObject
{
    Q_OBJECT
public:
    /// `connection` is one to the bus at `busAddress`, where they live.
    Scenery(const QString &busAddress, const QDBusConnection &connection);
    ~Scenery() override;

    /// Whether they are there; a critical line has told what is wrong if not.
    bool isReady() const;
    /// Makes the printer fit in, before its daemon starts.
    void prepare(test_support::DaemonSandbox &sandbox);
    /// The commands that change them.
    QVector<Command> commands(Feed &feed);
    /// The commands that a conversation begins with, and what is told then.
    static QStringList opening();
    static QString greeting();

signals:
    /// A request reached the speech service.
    void spoke(const QVariantMap &request);

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};
