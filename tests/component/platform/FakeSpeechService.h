#pragma once

#include "BusName.h"
#include "Text.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVector>

/// The speech service as it may be: good, in trouble, or not answering.
class FakeSpeechService : public QDBusVirtualObject
{
    Q_OBJECT

public:
    enum class Manner { Answering, Failing, Hanging };

    explicit FakeSpeechService(const QString &address)
        : m_program(address, "speech"_s)
    {
        m_program.connection().registerVirtualObject("/"_s, this);
    }

    static QString name() { return "com.tactora.Speech"_s; }

    bool start() { return m_program.take(name()); }
    bool stop() { return m_program.release(name()); }
    void crash() { m_program.leave(); }

    QString introspect(const QString & /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        requests.append(message);
        switch (manner) {
        case Manner::Answering:
            return connection.send(message.createReply());
        case Manner::Failing:
            return connection.send(message.createErrorReply(QDBusError::Failed, "out of breath"_s));
        case Manner::Hanging:
            return true;
        }
        return false;
    }

    Manner manner = Manner::Answering;
    QVector<QDBusMessage> requests;

private:
    BusName m_program;
};
