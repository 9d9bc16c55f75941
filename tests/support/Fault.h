#pragma once

#include <QPointer>
#include <QString>
#include <QVariantMap>

namespace test_support {

class SimulatorClient;

/// What happens to a call instead of its usual answer.
class FaultKind
{
public:
    /// That D-Bus error, no effect.
    static FaultKind error(const QString &name, const QString &message);
    /// That reply with its types as they are, no effect.
    static FaultKind reply(const QVariantList &arguments);
    /// The usual effect and answer, that much later.
    static FaultKind delay(int milliseconds);
    /// An error or a reply only after that time.
    FaultKind after(int milliseconds) const;
    /// No answer, no effect.
    static FaultKind never();
    /// The service leaves the bus in the middle of the call.
    static FaultKind vanish();

    QVariantMap toMap() const { return m_map; }

private:
    explicit FaultKind(const QString &kind, QVariantMap details = {});
    QVariantMap m_map;
};

/// An injected fault. The test that made it fails if it has not fired by the time this object ends: a test
/// of a failure that never happened shows nothing.
class [[nodiscard]] Fault
{
public:
    Fault(SimulatorClient &client, uint id, QString description);
    ~Fault();
    Fault(Fault &&other) noexcept;
    Fault &operator=(Fault &&) = delete;

    /// How often it has fired so far.
    uint fired() const;
    /// Fails the current test when it has not fired yet; the destructor then checks no more.
    void verify();
    /// It may fire or not: nobody checks it.
    void excuse() { m_client = nullptr; }

private:
    QPointer<SimulatorClient> m_client;
    uint m_id;
    QString m_description;
};

} // namespace test_support
