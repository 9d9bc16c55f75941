#pragma once

#include <QDBusMessage>
#include <QDBusVariant>
#include <QObject>

namespace test_support {
struct TestDevice;
}

namespace soak {

/// The network cable of the simulated device, whose every move is waited for until ConnMan has told it.
class Cable : public QObject
{
    Q_OBJECT
public:
    explicit Cable(test_support::TestDevice &device);

    /// False when ConnMan did not tell of it.
    bool plugIn();
    bool pullOut();

private slots:
    void propertyChanged(const QString &name, const QDBusVariant &value);
    void servicesChanged(const QDBusMessage &message);

private:
    test_support::TestDevice &m_device;
    QString m_state;
    bool m_isListed = false;
};

} // namespace soak
