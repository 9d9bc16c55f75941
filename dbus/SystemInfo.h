#pragma once

#include <QObject>
#include <QVariantMap>

#include <memory>

class QDBusInterface;

namespace detail {

/// Client of the device's configuration manager (com.tactora.ConfigurationManager on the system bus). Use the
/// one instance of libtactora::Singleton<detail::SystemInfo>. Failures are critical lines and empty results.
class SystemInfo : public QObject
{
    Q_OBJECT

public:
    explicit SystemInfo(QObject *parent = nullptr);
    ~SystemInfo() override;

    /// Sends one request and returns the reply with all nested dictionaries unpacked; empty on failure.
    QVariantMap process(const QVariantMap &request) const;
    /// The device's serial number; 0 when it cannot be had.
    int serialNumber() const;

private:
    std::unique_ptr<QDBusInterface> m_interface;
};

} // namespace detail
