#include "AgentFixture.h"
#include "Suite.h"
#include "Text.h"

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
                             arguments.join(", "_s) + QLatin1Char(')');
        } else if (xml.name() != QLatin1String("annotation")) {
            members.append(xml.name().toString() + QLatin1Char(' ') + attribute("name") + "()"_s);
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
    const QDBusMessage request =
        QDBusMessage::createMethodCall(QDBusConnection::systemBus().baseService(), "/agent"_s,
                                       "org.freedesktop.DBus.Introspectable"_s, "Introspect"_s);
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
        "method Release()"_s,
        "method ReportError(in o service, in s error)"_s,
        "method ReportPeerError(in o peer, in s error)"_s,
        "method RequestBrowser(in o service, in s url)"_s,
        "method RequestInput(out a{sv} , in o service, in a{sv} fields)"_s,
        "method RequestPeerAuthorization(out a{sv} , in o peer, in a{sv} fields)"_s,
        "method Cancel()"_s,
    };
    QCOMPARE(membersOf(introspection(), "net.connman.Agent"_s), members);
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
    QCOMPARE(interfaces, QStringList({"net.connman.Agent"_s, "org.freedesktop.DBus.Introspectable"_s,
                                      "org.freedesktop.DBus.Peer"_s, "org.freedesktop.DBus.Properties"_s}));
}

void AgentIntrospectionTest::callWithOtherArgumentsIsUnknown_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<QVariantList>("arguments");

    const QString textPath = "/a"_s;
    QTest::newRow("input without fields") << "RequestInput"_s << QVariantList{servicePath()};
    QTest::newRow("input of a text path") << "RequestInput"_s << QVariantList{textPath, QVariantMap()};
    QTest::newRow("input with a list") << "RequestInput"_s << QVariantList{servicePath(), QStringList()};
    QTest::newRow("error of a number") << "ReportError"_s << QVariantList{servicePath(), 5};
    QTest::newRow("error of nothing") << "ReportError"_s << QVariantList();
}

void AgentIntrospectionTest::callWithOtherArgumentsIsUnknown()
{
    QFETCH(QString, member);
    QFETCH(QVariantList, arguments);

    QCOMPARE(call(member, arguments).errorName(), "org.freedesktop.DBus.Error.UnknownMethod"_s);
    QCOMPARE(agentLines(), QStringList());
}

void AgentIntrospectionTest::unknownMethodIsRefused()
{
    QCOMPARE(call("setRequest"_s).errorName(), "org.freedesktop.DBus.Error.UnknownMethod"_s);
}

void AgentIntrospectionTest::agentsSignalStaysInTheProcess()
{
    QVERIFY(!introspection().contains("connectFailed"_s));
}

void AgentIntrospectionTest::pathThatIsTakenIsOneCriticalLine()
{
    ConnmanAgent second(nullptr);
    const ConnmanAgentDBus secondAdaptor(&second);

    QCOMPARE(log().lines("default"_s, QtCriticalMsg),
             QStringList("Unable to register object on system-bus."_s));
    QCOMPARE(secondAdaptor.path().path(), "/agent"_s);
}

static const Suite<AgentIntrospectionTest> agentIntrospectionTest;
#include "AgentIntrospectionTest.moc"
