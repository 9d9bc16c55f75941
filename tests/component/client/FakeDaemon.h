#pragma once

#include "Text.h"
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QStringList>
#include <QVariant>

/// A network that the daemon may list.
inline const QString kitchen = "wifi_020000000200_4b69746368656e_managed_psk"_s;

/// Stands on the bus where the daemon would be: notes every call and answers as it was told.
class FakeDaemon : public QDBusVirtualObject
{
    Q_OBJECT
public:
    explicit FakeDaemon(const QString &busAddress);
    ~FakeDaemon() override;

    bool isReady() const { return m_isReady; }
    /// The answer to each call that has none of its own; true at first.
    void setAnswer(const QVariant &answer) { m_answer = answer; }
    /// The answer to each call of that method.
    void setAnswer(const QString &method, const QVariant &answer) { m_answers[method] = answer; }
    /// The signal "error" before each answer to that method.
    void setError(const QString &method, const QString &text) { m_errors[method] = text; }
    /// Each call is refused with that D-Bus error.
    void refuse(const QString &errorName) { m_refusal = errorName; }
    /// Calls of that method are not answered before release().
    void hold(const QString &method) { m_held << method; }
    void release();

    void sendSignal(const QString &name, const QVariantList &arguments);

    /// "method(types)" of each call so far.
    QStringList signatures() const { return m_signatures; }
    /// "method argument, argument" of each call so far.
    QStringList calls() const { return m_calls; }

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

signals:
    void called(const QString &call);

private:
    void answer(const QDBusMessage &call);

    QDBusConnection m_connection;
    bool m_isReady;
    QVariant m_answer = true;
    QMap<QString, QVariant> m_answers;
    QMap<QString, QString> m_errors;
    QString m_refusal;
    QStringList m_held;
    QList<QDBusMessage> m_waiting;
    QStringList m_signatures;
    QStringList m_calls;
};
