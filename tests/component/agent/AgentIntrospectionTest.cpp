#include "AgentFixture.h"
#include "Suite.h"

#include <QDBusPendingCallWatcher>
#include <QEventLoop>
#include <QTest>
#include <QXmlStreamReader>

namespace {

/// "Method(in o service, out a{sv})" for each member of the agent's interface, in order.
QStringList membersOf(const QString &introspection, const QString &interface)
{
    QStringList members;
    QStringList arguments;
    bool inside = false;
    QXmlStreamReader xml(introspection);
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        const auto attribute = [&xml](const char *name) {
            return xml.attributes().value(QLatin1String(name)).toString();
        };
        if (xml.name() == QLatin1String("interface")) {
            inside = token == QXmlStreamReader::StartElement && attribute("name") == interface;
        } else if (!inside || token != QXmlStreamReader::StartElement) {
            continue;
        } else if (xml.name() == QLatin1String("arg")) {
            arguments.append(QStringList({attribute("direction"), attribute("type"), attribute("name")})
                                 .join(QLatin1Char(' ')));
            members.last() = members.last().section(QLatin1Char('('), 0, 0) + QLatin1Char('(') +
                             arguments.join(QStringLiteral(", ")) + QLatin1Char(')');
        } else if (xml.name() != QLatin1String("annotation")) {
            members.append(xml.name().toString() + QLatin1Char(' ') + attribute("name") +
                           QStringLiteral("()"));
            arguments.clear();
        }
    }
    return members;
}

} // namespace

class AgentIntrospectionTest : public AgentFixture
{
    Q_OBJECT

private slots:
    void interfaceHasConnmansSevenMethodsAndNothingElse();
    void onlyTheAgentsInterfaceIsExported();
    void callWithOtherArgumentsIsUnknown_data();
    void callWithOtherArgumentsIsUnknown();
    void unknownMethodIsRefused();
    void agentsSignalStaysInTheProcess();
    void pathThatIsTakenIsOneCriticalLine();

private:
    QString introspection();
};

QString AgentIntrospectionTest::introspection()
{
    const QDBusMessage request = QDBusMessage::createMethodCall(
        QDBusConnection::systemBus().baseService(), QStringLiteral("/agent"),
        QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
    QDBusPendingCallWatcher watcher(QDBusConnection::systemBus().asyncCall(request));
    QEventLoop loop;
    connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    if (!watcher.isFinished()) {
        loop.exec();
    }
    return watcher.reply().arguments().value(0).toString();
}

void AgentIntrospectionTest::interfaceHasConnmansSevenMethodsAndNothingElse()
{
    const QStringList members = {
        QStringLiteral("method Release()"),
        QStringLiteral("method ReportError(in o service, in s error)"),
        QStringLiteral("method ReportPeerError(in o peer, in s error)"),
        QStringLiteral("method RequestBrowser(in o service, in s url)"),
        QStringLiteral("method RequestInput(out a{sv} , in o service, in a{sv} fields)"),
        QStringLiteral("method RequestPeerAuthorization(out a{sv} , in o peer, in a{sv} fields)"),
        QStringLiteral("method Cancel()"),
    };
    QCOMPARE(membersOf(introspection(), QStringLiteral("net.connman.Agent")), members);
}

void AgentIntrospectionTest::onlyTheAgentsInterfaceIsExported()
{
    QStringList interfaces;
    QXmlStreamReader xml(introspection());
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("interface")) {
            interfaces.append(xml.attributes().value(QLatin1String("name")).toString());
        }
    }
    interfaces.sort();
    QCOMPARE(interfaces, QStringList({QStringLiteral("net.connman.Agent"),
                                      QStringLiteral("org.freedesktop.DBus.Introspectable"),
                                      QStringLiteral("org.freedesktop.DBus.Peer"),
                                      QStringLiteral("org.freedesktop.DBus.Properties")}));
}

void AgentIntrospectionTest::callWithOtherArgumentsIsUnknown_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariantList>("arguments");

    const QString textPath = QStringLiteral("/a");
    QTest::newRow("input without fields") << QStringLiteral("RequestInput") << QVariantList{servicePath()};
    QTest::newRow("input of a text path")
        << QStringLiteral("RequestInput") << QVariantList{textPath, QVariantMap()};
    QTest::newRow("input with a list")
        << QStringLiteral("RequestInput") << QVariantList{servicePath(), QStringList()};
    QTest::newRow("error of a number") << QStringLiteral("ReportError") << QVariantList{servicePath(), 5};
    QTest::newRow("error of nothing") << QStringLiteral("ReportError") << QVariantList();
}

void AgentIntrospectionTest::callWithOtherArgumentsIsUnknown()
{
    QFETCH(QString, member);
    QFETCH(QVariantList, arguments);

    QCOMPARE(call(member, arguments).errorName(), QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"));
    QCOMPARE(agentLines(), QStringList());
}

void AgentIntrospectionTest::unknownMethodIsRefused()
{
    QCOMPARE(call(QStringLiteral("setRequest")).errorName(),
             QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod"));
}

void AgentIntrospectionTest::agentsSignalStaysInTheProcess()
{
    QVERIFY(!introspection().contains(QStringLiteral("connectFailed")));
}

void AgentIntrospectionTest::pathThatIsTakenIsOneCriticalLine()
{
    ConnmanAgent second(nullptr);
    const ConnmanAgentDBus secondAdaptor(&second);

    QCOMPARE(log().lines(QStringLiteral("default"), QtCriticalMsg),
             QStringList(QStringLiteral("Unable to register object on system-bus.")));
    QCOMPARE(secondAdaptor.path().path(), QStringLiteral("/agent"));
}

static const Suite<AgentIntrospectionTest> suite;
#include "AgentIntrospectionTest.moc"
