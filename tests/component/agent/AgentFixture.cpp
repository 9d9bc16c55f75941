#include "AgentFixture.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QLoggingCategory>
#include <QTest>

namespace {

const QString connmanConnection = QStringLiteral("connman");
const QString agentCategory = QStringLiteral("ConnmanAgent");

QString typeName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("debug");
    case QtInfoMsg:
        return QStringLiteral("info");
    case QtWarningMsg:
        return QStringLiteral("warning");
    case QtCriticalMsg:
        return QStringLiteral("critical");
    case QtFatalMsg:
        return QStringLiteral("fatal");
    }
    return {};
}

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
    QLoggingCategory::setFilterRules(QStringLiteral("ConnmanAgent.debug=true\nConnmanAgent.warning=true"));
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
            lines.append(typeName(message.type) + QLatin1Char('|') + message.text);
        }
    }
    return lines;
}

QDBusMessage AgentFixture::call(const QString &member, const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(QDBusConnection::systemBus().baseService(), QStringLiteral("/agent"),
                                       QStringLiteral("net.connman.Agent"), member);
    message.setArguments(arguments);
    QDBusPendingCallWatcher watcher(m_connman.asyncCall(message));
    QEventLoop loop;
    connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    loop.exec();
    return watcher.reply();
}

QDBusMessage AgentFixture::requestInput(const QVariantMap &fields)
{
    return call(QStringLiteral("RequestInput"), {servicePath(), fields});
}

QVariantMap AgentFixture::answer(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{sv}")) {
        QTest::qFail(qPrintable(QStringLiteral("no dictionary: ") + error(reply)), __FILE__, __LINE__);
        return {};
    }
    return qdbus_cast<QVariantMap>(reply.arguments().constFirst());
}

QString AgentFixture::error(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ErrorMessage) {
        return QStringLiteral("message of type %1 with signature \"%2\"")
            .arg(reply.type())
            .arg(reply.signature());
    }
    return reply.errorName() + QStringLiteral(": ") + reply.errorMessage();
}

QString AgentFixture::invalidArgs(const QString &message)
{
    return QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs: ") + message;
}

QVariant AgentFixture::servicePath()
{
    return QVariant::fromValue(
        QDBusObjectPath(QStringLiteral("/net/connman/service/wifi_0_home_managed_psk")));
}
