#include "NetworkNames.h"

#include "ConnmanTypes.h"
#include <QDBusMessage>
#include <QDBusReply>
#include <utility>

namespace {

using Services = QMap<QString, QVariantMap>;

QStringList named(const Services &services, const QString &name)
{
    QStringList matches;
    for (auto service = services.cbegin(); service != services.cend(); ++service) {
        if (service->value(QStringLiteral("Name")).toString() == name) {
            matches << service.key();
        }
    }
    return matches;
}

QStringList identified(const Services &services, const QString &text)
{
    if (services.contains(text)) {
        return {text};
    }
    return services.keys().filter(text);
}

} // namespace

NetworkNames::NetworkNames(QDBusConnection bus)
    : m_bus(std::move(bus))
{
    registerConnmanTypes();
}

NetworkNames::Result NetworkNames::find(const QString &text) const
{
    if (text.startsWith(QLatin1Char('='))) {
        return {text.mid(1), {}};
    }
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber && number >= 1 && number <= m_listed.size()) {
        return {m_listed.at(number - 1), {}};
    }
    const Services all = services();
    QStringList candidates = named(all, text);
    if (candidates.isEmpty() && !isNumber) { // every identifier has some number in it
        candidates = identified(all, text);
    }
    if (candidates.isEmpty()) {
        return {{}, QStringLiteral("There is no network \"%1\"; \"list\" tells which there are.").arg(text)};
    }
    if (candidates.size() > 1) {
        const QString list = candidates.join(QStringLiteral("\n  "));
        return {{}, QStringLiteral("\"%1\" may be one of several:\n  %2").arg(text, list)};
    }
    return {candidates.first(), {}};
}

Services NetworkNames::services() const
{
    const QDBusMessage call =
        QDBusMessage::createMethodCall(QStringLiteral("net.connman"), QStringLiteral("/"),
                                       QStringLiteral("net.connman.Manager"), QStringLiteral("GetServices"));
    const QDBusReply<ConnmanServiceInfoList> reply = m_bus.call(call);
    Services services;
    const ConnmanServiceInfoList infos = reply.value();
    for (const ConnmanServiceInfo &info : infos) {
        services.insert(info.path.path().section(QLatin1Char('/'), -1), info.properties);
    }
    return services;
}
