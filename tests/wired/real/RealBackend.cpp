#include "RealBackend.h"

#include "Kernel.h"
#include "OutsideTheWorld.h"
#include <QCoreApplication>

RealBackend::RealBackend(const QDBusConnection &bus)
    : m_speechService(bus)
    , m_link(bus)
{
    QObject::connect(&m_speechService, &SpeechService::spoke, &m_speechService,
                     [this](const QVariantMap &request) { speech().add(request); });
}

QStringList RealBackend::addresses() const
{
    return kernel::ipv4Addresses(WiredLink::interface());
}

QString RealBackend::defaultGateway() const
{
    return kernel::defaultGateway(WiredLink::interface());
}

QStringList RealBackend::nameservers() const
{
    return kernel::nameservers();
}

bool RealBackend::ipv6Enabled() const
{
    return kernel::ipv6Enabled(WiredLink::interface());
}

std::unique_ptr<Backend> makeBackend(const QString &, const QDBusConnection &client)
{
    return std::make_unique<RealBackend>(client);
}
