#include "ConnmanProperties.h"

#include "ConnmanNames.h"
#include "ConnmanRemote.h"
#include "Utils.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QLoggingCategory>

ConnmanProperties::ConnmanProperties(const ConnmanRemote &remote, LogCategory log)
    : m_remote(&remote)
    , m_log(log)
{
}

QDBusError ConnmanProperties::fetch()
{
    const QDBusMessage reply = m_remote->call(ConnmanNames::GetProperties);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{sv}")) {
        return QDBusReply<QVariantMap>(reply).error();
    }
    m_values = Utils::readDictionary(reply.arguments().constFirst().value<QDBusArgument>());
    for (QVariant &value : m_values) {
        value = Utils::convertDBusArgument(value);
    }
    return {};
}

void ConnmanProperties::logFailedFetch(const QDBusError &error) const
{
    qCCritical(m_log) << "Call to" << ConnmanNames::GetProperties.data() << "failed:" << error.message();
}

void ConnmanProperties::patch(const QString &name, const QDBusVariant &value)
{
    const QVariant plain = Utils::convertDBusArgument(value.variant());
    qCDebug(m_log) << "propertyChanged(" << name << ", " << plain << ")";
    m_values.insert(name, plain);
}

QDBusError ConnmanProperties::set(const QString &name, const QVariant &value) const
{
    qCDebug(m_log) << name << "->" << value;
    const QDBusError error(
        m_remote->call(ConnmanNames::SetProperty, {name, QVariant::fromValue(QDBusVariant(value))}));
    if (error.isValid() && error.type() != QDBusError::UnknownObject) {
        qCCritical(m_log) << "Setting property" << name << "failed:" << error.message();
    }
    return error;
}

std::optional<QVariant> ConnmanProperties::find(const QString &key, int requiredType) const
{
    if (contains(key)) {
        return findOptional(key, requiredType);
    }
    qCCritical(m_log) << "Missing property" << key << "of service" << m_remote->path();
    return std::nullopt;
}

std::optional<QVariant> ConnmanProperties::findOptional(const QString &key, int requiredType) const
{
    const auto value = m_values.constFind(key);
    if (value == m_values.cend()) {
        return std::nullopt;
    }
    if (value->canConvert(requiredType)) {
        return *value;
    }
    logInvalidType(key);
    return std::nullopt;
}

void ConnmanProperties::logInvalidType(const QString &key) const
{
    qCCritical(m_log) << "Invalid type of property" << key << "of service" << m_remote->path();
}
