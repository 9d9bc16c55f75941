#pragma once

#include <QObject>
#include <QVariantMap>

namespace detail {

/// Client of the device's configuration manager (com.tactora.ConfigurationManager on the system bus). Use the
/// one instance of libtactora::Singleton<detail::SystemInfo>. Failures are critical lines and empty results.
class SystemInfo : public QObject
{
    Q_OBJECT

public:
    /// Complains once when the configuration manager is not there yet; it may come later.
    explicit SystemInfo(QObject *parent = nullptr);

    /// Sends one request and returns the reply with all nested dictionaries unpacked; empty on failure.
    /// Blocks until the reply is there: 25 seconds, D-Bus's own limit, with a manager that never answers.
    QVariantMap process(const QVariantMap &request) const;
    /// The device's serial number; 0 when it cannot be had. Blocks like process().
    int serialNumber() const;
};

} // namespace detail
