#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariant>

/// Stands on the bus where the daemon would be: notes every call and gives each the same answer.
class DaemonDouble : public QDBusVirtualObject
{
    Q_OBJECT
public:
    explicit DaemonDouble(const QString &busAddress);
    ~DaemonDouble() override;

    bool isReady() const { return m_isReady; }
    void setAnswer(const QVariant &answer) { m_answer = answer; }

    /// "method(types)" of each call so far.
    QStringList signatures() const { return m_signatures; }
    /// "method argument, argument" of each call so far.
    QStringList calls() const { return m_calls; }

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    QDBusConnection m_connection;
    bool m_isReady;
    QVariant m_answer = true;
    QStringList m_signatures;
    QStringList m_calls;
};
