#include "ConnmanTechnology.h"

#include "ConnmanNames.h"
#include "Utils.h"

#include <QDBusError>
#include <QDBusInterface>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QDBusVariant>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(logConnmanTechnology, "ConnmanTechnology", QtCriticalMsg)

namespace {

constexpr const char *Scan = "Scan";
const QLatin1String Powered("Powered");

} // namespace

ConnmanTechnology::ConnmanTechnology(QDBusConnection connection, const QString &name, QObject *parent)
    : QObject(parent)
    , m_path(QStringLiteral("/net/connman/technology/%1").arg(name))
    , m_interface(new QDBusInterface(ConnmanNames::service(), m_path, ConnmanNames::technologyInterface(),
                                     connection, this))
{
    if (!connection.connect(ConnmanNames::service(), m_path, ConnmanNames::technologyInterface(),
                            QLatin1String(ConnmanNames::PropertyChanged),
                            ConnmanNames::PropertyChangedSignature, this,
                            SLOT(propertyChanged(QString, QDBusVariant)))) {
        qCCritical(logConnmanTechnology)
            << "Unable to connect" << ConnmanNames::PropertyChanged << "signal for service" << m_path;
    }
    dbusUpdateProperties();
}

ConnmanTechnology::~ConnmanTechnology() = default;

bool ConnmanTechnology::dbusUpdateProperties()
{
    const QDBusReply<QVariantMap> reply = m_interface->call(QLatin1String(ConnmanNames::GetProperties));
    if (!reply.isValid()) {
        qCCritical(logConnmanTechnology)
            << "Call to" << ConnmanNames::GetProperties << "failed:" << reply.error().message();
        return reply.error().type() != QDBusError::UnknownObject;
    }
    QVariantMap properties = reply.value();
    for (QVariant &value : properties) {
        value = Utils::convertDBusArgument(value);
    }
    m_properties = properties;
    return true;
}

void ConnmanTechnology::propertyChanged(const QString &name, const QDBusVariant &value)
{
    const QVariant converted = Utils::convertDBusArgument(value.variant());
    qCDebug(logConnmanTechnology) << "propertyChanged(" << name << ", " << converted << ")";
    m_properties.insert(name, converted);
}

bool ConnmanTechnology::setProperty(const QString &name, const QVariant &value)
{
    qCDebug(logConnmanTechnology) << name << "->" << value;
    const QDBusMessage reply = m_interface->call(QLatin1String(ConnmanNames::SetProperty), name,
                                                 QVariant::fromValue(QDBusVariant(value)));
    const QDBusError error(reply);
    if (error.isValid() && error.type() != QDBusError::UnknownObject) {
        qCCritical(logConnmanTechnology) << "Setting property" << name << "failed:" << error.message();
    }
    return !error.isValid();
}

bool ConnmanTechnology::setPowered(bool on)
{
    return setProperty(Powered, on);
}

bool ConnmanTechnology::scan() const
{
    QDBusPendingCall call = m_interface->asyncCall(QLatin1String(Scan));
    call.waitForFinished();
    if (!call.isError()) {
        return true;
    }
    qCCritical(logConnmanTechnology) << "Failed to asynchronously call" << Scan << "on" << m_path << ":"
                                     << call.error().message();
    return false;
}

QString ConnmanTechnology::name() const
{
    return property(QStringLiteral("Name"), QMetaType::QString).value_or(QVariant()).toString();
}

QString ConnmanTechnology::type() const
{
    return property(QStringLiteral("Type"), QMetaType::QString).value_or(QVariant()).toString();
}

bool ConnmanTechnology::isConnected() const
{
    return property(QStringLiteral("Connected"), QMetaType::Bool).value_or(false).toBool();
}

bool ConnmanTechnology::isTethering() const
{
    return property(QStringLiteral("Tethering"), QMetaType::Bool).value_or(false).toBool();
}

int ConnmanTechnology::isPowered()
{
    constexpr int UnknownPower = -1;
    dbusUpdateProperties();
    return property(Powered, QMetaType::Int).value_or(UnknownPower).toInt();
}

std::optional<QVariant> ConnmanTechnology::property(const QString &key, int requiredType) const
{
    const auto value = m_properties.constFind(key);
    if (value == m_properties.cend()) {
        qCCritical(logConnmanTechnology) << "Missing property" << key << "of service" << m_path;
        return std::nullopt;
    }
    if (!value->canConvert(requiredType)) {
        qCCritical(logConnmanTechnology) << "Invalid type of property" << key << "of service" << m_path;
        return std::nullopt;
    }
    return *value;
}
