#include "ConnmanTechnology.h"

#include "ConnmanNames.h"
#include "Latin1.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(logConnmanTechnology, "ConnmanTechnology", QtCriticalMsg)

namespace {

constexpr QLatin1String Scan = latin1("Scan");
constexpr QLatin1String Powered = latin1("Powered");

bool isBooleanOrNumber(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

} // namespace

ConnmanTechnology::ConnmanTechnology(const QDBusConnection &connection, const QString &name, QObject *parent)
    : QObject(parent)
    , m_remote(connection, QStringLiteral("/net/connman/technology/%1").arg(name),
               ConnmanNames::TechnologyInterface)
    , m_properties(m_remote, logConnmanTechnology)
{
    if (!m_remote.subscribe(ConnmanNames::PropertyChanged, ConnmanNames::PropertyChangedSignature, this,
                            SLOT(propertyChanged(QString, QDBusVariant)))) {
        qCCritical(logConnmanTechnology) << "Unable to connect" << ConnmanNames::PropertyChanged.data()
                                         << "signal for service" << m_remote.path();
    }
    dbusUpdateProperties();
}

bool ConnmanTechnology::dbusUpdateProperties()
{
    const QDBusError error = m_properties.fetch();
    if (error.isValid()) {
        m_properties.logFailedFetch(error);
    }
    return error.type() != QDBusError::UnknownObject;
}

void ConnmanTechnology::propertyChanged(const QString &name, const QDBusVariant &value)
{
    m_properties.patch(name, value);
}

bool ConnmanTechnology::setProperty(const QString &name, const QVariant &value)
{
    return !m_properties.set(name, value).isValid();
}

bool ConnmanTechnology::setPowered(bool on)
{
    return setProperty(Powered, on);
}

bool ConnmanTechnology::scan() const
{
    QDBusPendingCall call = m_remote.asyncCall(Scan);
    call.waitForFinished();
    if (!call.isError()) {
        return true;
    }
    qCCritical(logConnmanTechnology) << "Failed to asynchronously call" << Scan.data() << "on"
                                     << m_remote.path() << ":" << call.error().message();
    return false;
}

QString ConnmanTechnology::name() const
{
    return m_properties.find(QStringLiteral("Name"), QMetaType::QString).value_or(QVariant()).toString();
}

QString ConnmanTechnology::type() const
{
    return m_properties.find(QStringLiteral("Type"), QMetaType::QString).value_or(QVariant()).toString();
}

bool ConnmanTechnology::isConnected() const
{
    return m_properties.find(QStringLiteral("Connected"), QMetaType::Bool).value_or(false).toBool();
}

bool ConnmanTechnology::isTethering() const
{
    return m_properties.find(QStringLiteral("Tethering"), QMetaType::Bool).value_or(false).toBool();
}

int ConnmanTechnology::isPowered()
{
    constexpr int UnknownPower = -1;
    dbusUpdateProperties();
    const auto powered = m_properties.find(Powered, QMetaType::Int);
    if (!powered) {
        return UnknownPower;
    }
    if (!isBooleanOrNumber(*powered)) {
        m_properties.logInvalidType(Powered);
        return UnknownPower;
    }
    const bool isOn =
        powered->userType() == QMetaType::Double ? !qIsNull(powered->toDouble()) : powered->toLongLong() != 0;
    return isOn ? 1 : 0;
}
