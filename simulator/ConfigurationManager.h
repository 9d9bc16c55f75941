#pragma once

#include "BusService.h"
#include <QVariantMap>

namespace simulator {

/// The device's configuration manager: com.tactora.ConfigurationManager, process(a{sv}) -> a{sv}.
class ConfigurationManager : public BusService
{
    Q_OBJECT
public:
    ConfigurationManager(const QString &address, Instruments instruments, QObject *parent = nullptr);

    /// The reply to every call, whole.
    void setReply(const QVariantMap &reply) { m_reply = reply; }
    /// The usual reply with this serial number.
    void setSerialNumber(int serialNumber);

    QString introspect(const QString &path) const override;

protected:
    void handleCall(const Call &call) override;

private:
    QVariantMap m_reply;
};

} // namespace simulator
