#pragma once

#include "Command.h"
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

class Feed;

namespace test_support {
class DaemonSandbox;
}

/// What is around the printer: ConnMan with its networks, and the speech service.
class Surroundings : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// Whether they are there; a critical line has told what is wrong if not.
    virtual bool isReady() const = 0;
    /// Makes the printer fit in, before its daemon starts.
    virtual void prepare(test_support::DaemonSandbox &sandbox) = 0;
    /// The commands that change them.
    virtual QVector<Command> commands(Feed &feed) = 0;
    /// The commands that a conversation begins with, and what is told then.
    virtual QStringList scenery() const = 0;
    virtual QString greeting() const = 0;

signals:
    /// A request reached the speech service.
    void spoke(const QVariantMap &request);
};
