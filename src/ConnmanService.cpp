#include "ConnmanService.h"

#include "ConnmanNames.h"
#include "ConnmanServiceLog.h"
#include "ConnmanServiceSignals.h"
#include "Latin1.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <algorithm>
#include <array>

Q_LOGGING_CATEGORY(logConnmanService, "ConnmanService", QtCriticalMsg)
Q_LOGGING_CATEGORY(logConnmanServiceProperties, "ConnmanService.properties", QtCriticalMsg)

namespace {

using State = ConnmanService::State;

constexpr QLatin1String StateProperty = latin1("State");

struct StateWord
{
    State state;
    const char *word;
};

constexpr std::array<StateWord, ConnmanService::StateCount> StateWords{{
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

ConnmanService::ConnmanService(const QDBusConnection &connection, const QDBusObjectPath &path,
                               QObject *parent)
    : QObject(parent)
    , m_remote(connection, path.path(), ConnmanNames::ServiceInterface, CallTimeout)
    , m_properties(m_remote, logConnmanServiceProperties)
    , m_signals(ConnmanServiceSignals::of(connection))
{
    qCDebug(logConnmanService) << "ConnmanService(" << ConnmanNames::Service << "," << this->path() << ","
                               << ConnmanNames::ServiceInterface;
    if (!m_signals->add(this)) {
        qCCritical(logConnmanService) << "Unable to connect" << ConnmanNames::PropertyChanged.data()
                                      << "signal for service" << this->path();
    }
}

ConnmanService::~ConnmanService()
{
    m_signals->remove(this);
}

QString ConnmanService::identifier() const
{
    const QString lastElement = path().mid(path().lastIndexOf(QLatin1Char('/')) + 1);
    return lastElement.left(lastElement.indexOf(QLatin1Char('.')));
}

bool ConnmanService::dbusUpdateProperties()
{
    const QVariant formerEthernet = m_properties.all().value(ConnmanNames::Ethernet);
    const QDBusError error = m_properties.fetch();
    tellInterfaceListener(formerEthernet);
    if (error.isValid() && error.type() != QDBusError::UnknownObject) {
        m_properties.logFailedFetch(error);
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
    const QVariant formerEthernet = m_properties.all().value(ConnmanNames::Ethernet);
    m_properties.patch(name, value);
    tellInterfaceListener(formerEthernet);
    if (name != StateProperty) {
        return;
    }

    // ConnMan changes addresses and the like together with the state; listeners must find them current.
    if (dbusUpdateProperties()) {
        updateState();
    } else {
        qCCritical(logConnmanServiceProperties) << "Unable to obtain properties after state-change.";
    }
}

void ConnmanService::tellInterfaceListener(const QVariant &formerEthernet) const
{
    if (m_interfaceListener && m_properties.all().value(ConnmanNames::Ethernet) != formerEthernet) {
        m_interfaceListener(path());
    }
}

bool ConnmanService::updateState()
{
    const QVariantMap &properties = m_properties.all();
    const auto cached = properties.constFind(StateProperty);
    if (cached == properties.cend()) {
        qCCritical(logConnmanServiceProperties)
            << "Service-properties doesn't contain a value for" << StateProperty.data();
        return false;
    }
    if (!cached->canConvert<QString>()) {
        qCCritical(logConnmanServiceProperties)
            << "Invalid value of" << StateProperty.data() << "for service" << path();
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
        << "State of" << path() << "changed" << wordFromState(m_state) << "=>" << wordFromState(newState);
    m_previousState = m_state;
    m_state = newState;
    emit stateChanged(newState);
    return true;
}
