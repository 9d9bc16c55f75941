#include "AgentFixture.h"
#include "Text.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QTest>

namespace {

const QString connmanConnection = "connman"_s;
const QString agentCategory = "ConnmanAgent"_s;

} // namespace

AgentFixture::AgentFixture()
    : m_connman(QDBusConnection::connectToBus(m_bus.address(), connmanConnection))
{
}

AgentFixture::~AgentFixture()
{
    QDBusConnection::disconnectFromBus(connmanConnection);
}

void AgentFixture::init()
{
    QLoggingCategory::setFilterRules("ConnmanAgent.debug=true\nConnmanAgent.warning=true"_s);
    m_log = std::make_unique<test_support::LogCapture>();
    m_agent = std::make_unique<ConnmanAgent>(nullptr);
    m_adaptor = new ConnmanAgentDBus(m_agent.get());
}

void AgentFixture::cleanup()
{
    m_agent.reset();
    m_log.reset();
}

QStringList AgentFixture::agentLines() const
{
    QStringList lines;
    for (const test_support::LogMessage &message : m_log->messages()) {
        if (message.category == agentCategory) {
            lines.append(message.line());
        }
    }
    return lines;
}

QDBusMessage AgentFixture::call(const QString &member, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(QDBusConnection::systemBus().baseService(),
                                                          "/agent"_s, "net.connman.Agent"_s, member);
    message.setArguments(arguments);
    QDBusPendingCallWatcher watcher(m_connman.asyncCall(message));
    QEventLoop loop;
    connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    loop.exec();
    return watcher.reply();
}

QDBusMessage AgentFixture::requestInput(const QVariantMap &fields)
{
    return call("RequestInput"_s, {servicePath(), fields});
}

QVariantMap AgentFixture::answer(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{sv}")) {
        QTest::qFail(qPrintable("no dictionary: "_s + error(reply)), __FILE__, __LINE__);
        return {};
    }
    return qdbus_cast<QVariantMap>(reply.arguments().constFirst());
}

QString AgentFixture::error(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ErrorMessage) {
        return "message of type %1 with signature \"%2\""_s.arg(reply.type()).arg(reply.signature());
    }
    return reply.errorName() + ": "_s + reply.errorMessage();
}

QString AgentFixture::invalidArgs(const QString &message)
{
    return "org.freedesktop.DBus.Error.InvalidArgs: "_s + message;
}

QVariant AgentFixture::servicePath()
{
    return QVariant::fromValue(QDBusObjectPath("/net/connman/service/wifi_0_home_managed_psk"_s));
}
