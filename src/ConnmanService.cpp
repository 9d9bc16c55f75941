#include "ConnmanService.h"

#include "ConnmanNames.h"
#include "ConnmanServiceLog.h"
#include "Utils.h"

#include <QDBusInterface>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QFileInfo>

#include <algorithm>
#include <array>

Q_LOGGING_CATEGORY(logConnmanService, "ConnmanService", QtCriticalMsg)
Q_LOGGING_CATEGORY(logConnmanServiceProperties, "ConnmanService.properties", QtCriticalMsg)

namespace {

using State = ConnmanService::State;

constexpr const char *StateProperty = "State";

struct StateWord
{
    State state;
    const char *word;
};

constexpr std::array<StateWord, 8> StateWords{{
    {State::Unknown, "unknown"},
    {State::Disconnect, "disconnect"},
    {State::Failure, "failure"},
    {State::Idle, "idle"},
    {State::Association, "association"},
    {State::Configuration, "configuration"},
    {State::Ready, "ready"},
    {State::Online, "online"},
}};

State stateFromWord(const QString &word)
{
    const auto *const found =
        std::find_if(StateWords.cbegin(), StateWords.cend(),
                     [&word](const StateWord &entry) { return word == QLatin1String(entry.word); });
    return found == StateWords.cend() ? State::Unknown : found->state;
}

QLatin1String wordFromState(State state)
{
    return QLatin1String(StateWords.at(static_cast<std::size_t>(state)).word);
}

} // namespace

ConnmanService::ConnmanService(QDBusConnection connection, const QDBusObjectPath &path, QObject *parent,
                               std::chrono::milliseconds callTimeout)
    : QObject(parent)
    , m_path(path.path())
    , m_interface(new QDBusInterface(ConnmanNames::service(), m_path, ConnmanNames::serviceInterface(),
                                     connection, this))
{
    qCDebug(logConnmanService) << "ConnmanService(" << ConnmanNames::service() << "," << m_path << ","
                               << ConnmanNames::serviceInterface();
    if (!connection.connect(ConnmanNames::service(), m_path, ConnmanNames::serviceInterface(),
                            QLatin1String(ConnmanNames::PropertyChanged),
                            ConnmanNames::PropertyChangedSignature, this,
                            SLOT(propertyChanged(QString, QDBusVariant)))) {
        qCCritical(logConnmanService)
            << "Unable to connect" << ConnmanNames::PropertyChanged << "signal for service" << m_path;
    }
    m_interface->setTimeout(static_cast<int>(callTimeout.count()));
}

ConnmanService::~ConnmanService() = default;

QString ConnmanService::identifier() const
{
    return QFileInfo(m_path).baseName();
}

bool ConnmanService::dbusUpdateProperties()
{
    const QDBusReply<QVariantMap> reply = m_interface->call(QLatin1String(ConnmanNames::GetProperties));
    if (reply.isValid()) {
        QVariantMap properties = reply.value();
        for (QVariant &value : properties) {
            value = Utils::convertDBusArgument(value);
        }
        m_properties = properties;
    } else if (reply.error().type() != QDBusError::UnknownObject) {
        qCCritical(logConnmanServiceProperties)
            << "Call to" << ConnmanNames::GetProperties << "failed:" << reply.error().message();
    }
    return true;
}

void ConnmanService::serviceChanged()
{
    if (dbusUpdateProperties()) {
        updateState();
    } else {
        qCCritical(logConnmanServiceProperties) << "Unable to obtain properties after service-change.";
    }
}

void ConnmanService::propertyChanged(const QString &name, const QDBusVariant &value)
{
    const QVariant converted = Utils::convertDBusArgument(value.variant());
    qCDebug(logConnmanServiceProperties) << "propertyChanged(" << name << ", " << converted << ")";
    m_properties.insert(name, converted);
    if (name != QLatin1String(StateProperty)) {
        return;
    }

    // ConnMan changes addresses and the like together with the state; listeners must find them current.
    if (dbusUpdateProperties()) {
        updateState();
    } else {
        qCCritical(logConnmanServiceProperties) << "Unable to obtain properties after state-change.";
    }
}

bool ConnmanService::updateState()
{
    const auto cached = m_properties.constFind(QLatin1String(StateProperty));
    if (cached == m_properties.cend()) {
        qCCritical(logConnmanServiceProperties)
            << "Service-properties doesn't contain a value for" << StateProperty;
        return false;
    }
    if (!cached->canConvert<QString>()) {
        qCCritical(logConnmanServiceProperties)
            << "Invalid value of" << StateProperty << "for service" << m_path;
        return false;
    }
    const QString word = cached->toString();
    const State newState = stateFromWord(word);
    if (newState == State::Unknown) {
        qCCritical(logConnmanServiceProperties) << "Unknown/invalid state received:" << word;
        return false;
    }
    if (newState == m_state) {
        return false;
    }

    qCDebug(logConnmanServiceProperties)
        << "State of" << m_path << "changed" << wordFromState(m_state) << "=>" << wordFromState(newState);
    m_previousState = m_state;
    m_state = newState;
    emit stateChanged(newState);
    return true;
}
