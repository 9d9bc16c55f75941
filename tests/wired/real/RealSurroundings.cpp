#include "RealSurroundings.h"

#include "Kernel.h"
#include "OutsideTheWorld.h"
#include <QCoreApplication>

RealSurroundings::RealSurroundings(const QDBusConnection &bus)
    : m_speechService(bus)
    , m_link(bus)
{
    QObject::connect(&m_speechService, &SpeechService::spoke, &m_speechService,
                     [this](const QVariantMap &request) { speech().add(request); });
}

QStringList RealSurroundings::addresses() const
{
    return kernel::ipv4Addresses(WiredLink::interface());
}

QString RealSurroundings::defaultGateway() const
{
    return kernel::defaultGateway(WiredLink::interface());
}

QStringList RealSurroundings::nameservers() const
{
    return kernel::nameservers();
}

bool RealSurroundings::ipv6Enabled() const
{
    return kernel::ipv6Enabled(WiredLink::interface());
}

std::unique_ptr<Surroundings> makeSurroundings(const QString &, const QDBusConnection &client)
{
    return std::make_unique<RealSurroundings>(client);
}
