#include "BusClient.h"

#include "EventWait.h"
#include "GVariantText.h"
#include "Text.h"
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QUuid>

namespace simulator_test {

namespace {
const QString serviceInterface = "net.connman.Service"_s;
const QStringList interfaces{"net.connman.Manager"_s, "net.connman.Technology"_s, serviceInterface};
constexpr int callTimeoutMs = 60000;

QString servicePath(const QString &identifier)
{
    return "/net/connman/service/"_s + identifier;
}

QString lastElement(const QString &path)
{
    return path.section(QLatin1Char('/'), -1);
}

Answer toAnswer(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage) {
        return {true, reply.errorName() + ": "_s + reply.errorMessage(), {}, {}};
    }
    return {false, {}, reply.arguments(), reply.signature()};
}
} // namespace

QString Answer::text() const
{
    return isError ? error : simulator::toGVariantText(arguments);
}

PendingAnswer::PendingAnswer(const QDBusConnection &connection, const QDBusMessage &call)
{
    auto *watcher = new QDBusPendingCallWatcher(connection.asyncCall(call, callTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        m_answer = toAnswer(watcher->reply());
        emit come();
    });
}

Answer PendingAnswer::wait()
{
    test_support::waitUntil([this] { return hasCome(); }, callTimeoutMs);
    return m_answer.value_or(Answer{true, "no answer"_s, {}, {}});
}

BusClient::BusClient(const QString &address)
    : m_name(QUuid::createUuid().toString(QUuid::Id128))
    , m_connection(QDBusConnection::connectToBus(address, m_name))
{
    for (const QString &interface : interfaces) {
        m_connection.connect(connman, {}, interface, {}, this, SLOT(record(QDBusMessage)));
    }
}

BusClient::~BusClient()
{
    QDBusConnection::disconnectFromBus(m_name);
}

bool BusClient::isOnTheBus(const QString &name) const
{
    return m_connection.interface()->isServiceRegistered(name);
}

bool BusClient::waitUntilGone(const QString &name) const
{
    const QDBusServiceWatcher watcher(name, m_connection, QDBusServiceWatcher::WatchForUnregistration);
    return test_support::waitUntil([this, &name] { return !isOnTheBus(name); });
}

Answer BusClient::call(const QString &service, const QString &path, const QString &interface,
                       const QString &member, const QVariantList &arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, member);
    message.setArguments(arguments);
    return PendingAnswer(m_connection, message).wait();
}

Answer BusClient::manager(const QString &member, const QVariantList &arguments) const
{
    return call(connman, "/"_s, "net.connman.Manager"_s, member, arguments);
}

Answer BusClient::technology(const QString &type, const QString &member, const QVariantList &arguments) const
{
    return call(connman, "/net/connman/technology/"_s + type, "net.connman.Technology"_s, member, arguments);
}

Answer BusClient::service(const QString &identifier, const QString &member,
                          const QVariantList &arguments) const
{
    return call(connman, servicePath(identifier), serviceInterface, member, arguments);
}

Answer BusClient::setServiceProperty(const QString &identifier, const QString &property,
                                     const QVariant &value) const
{
    return service(identifier, "SetProperty"_s, {property, QVariant::fromValue(QDBusVariant(value))});
}

std::unique_ptr<PendingAnswer> BusClient::startService(const QString &identifier, const QString &member) const
{
    return std::make_unique<PendingAnswer>(
        m_connection,
        QDBusMessage::createMethodCall(connman, servicePath(identifier), serviceInterface, member));
}

QString BusClient::property(const QString &identifier, const QString &name) const
{
    const Answer answer = service(identifier, "GetProperties"_s);
    if (answer.isError) {
        return answer.error;
    }
    const auto properties = qdbus_cast<QVariantMap>(answer.arguments.first());
    return properties.contains(name) ? simulator::toGVariantText(properties.value(name)) : QString();
}

QStringList BusClient::signalLines(const QString &part) const
{
    return m_lines.filter(part);
}

QStringList BusClient::states(const QString &identifier) const
{
    const QString prefix = identifier + " PropertyChanged(\"State\", <\""_s;
    QStringList states;
    for (const QString &line : m_lines) {
        if (line.startsWith(prefix)) {
            states.append(line.mid(prefix.size()).section(QLatin1Char('"'), 0, 0));
        }
    }
    return states;
}

void BusClient::stopListening()
{
    for (const QString &interface : interfaces) {
        m_connection.disconnect(connman, {}, interface, {}, this, SLOT(record(QDBusMessage)));
    }
}

bool BusClient::waitForSignal(const QString &part)
{
    return test_support::waitUntil([this, &part] { return !signalLines(part).isEmpty(); });
}

bool BusClient::waitForState(const QString &identifier, const QString &state)
{
    return test_support::waitUntil(
        [this, &identifier, &state] { return states(identifier).endsWith(state); });
}

void BusClient::record(const QDBusMessage &signal)
{
    m_lines.append("%1 %2(%3)"_s.arg(lastElement(signal.path()), signal.member(),
                                     simulator::toGVariantText(signal.arguments())));
}

} // namespace simulator_test
