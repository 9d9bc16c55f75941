#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

namespace simulator_test {

/// An agent at /test/agent that answers each RequestInput (and ReportError) with the next thing it was told
/// to.
class FakeAgent : public QDBusVirtualObject
{
    Q_OBJECT
public:
    explicit FakeAgent(QDBusConnection connection);
    ~FakeAgent() override;

    static constexpr char path[] = "/test/agent";

    /// What to answer to the next RequestInput that has no answer planned yet.
    void planInput(const QVariantMap &fields);
    void planInputError(const QString &name);
    void planInputSilence();
    void planRetry();

    /// The calls so far, each "<member>(<arguments>)".
    QStringList lines() const { return m_lines; }
    bool waitForLine(const QString &part);

    QString introspect(const QString &objectPath) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    struct Plan
    {
        bool isSilence = false;
        QString error;
        QVariantMap fields;
    };
    void answer(const QDBusMessage &message, const QDBusConnection &connection, const Plan &plan) const;

    QDBusConnection m_connection;
    QVector<Plan> m_inputs;
    bool m_retries = false;
    QStringList m_lines;
};

} // namespace simulator_test
