#include "Scenarios.h"

#include "Device.h"
#include "EventWait.h"
#include "Text.h"

#include <QFile>
#include <QTest>

using test_support::eventually;

namespace {

constexpr int logTail = 4000;

void printTail(const char *whose, const QString &log)
{
    qInfo("--- %s, the end of its log:\n%s---", whose, qUtf8Printable(log.right(logTail)));
}

} // namespace

void Scenarios::initTestCase()
{
    QVERIFY2(m_world.powerOn(), "the device's own parts did not come up");
}

void Scenarios::init()
{
    m_elapsed.start();
    QVERIFY2(m_world.begin(), "the world did not get ready for this scenario");
    qInfo("ready after %.1f s", static_cast<double>(m_elapsed.restart()) / 1000);
}

void Scenarios::cleanup()
{
    qInfo("took %.1f s", static_cast<double>(m_elapsed.elapsed()) / 1000);
    if (!QTest::currentTestFailed()) {
        return;
    }
    qInfo().noquote() << "signals:" << client().heard() << "spoken:" << speech().sentences();
    printTail("daemon", daemon().log());
    printTail("ConnMan", connman().log());
    m_world.spoil();
}

QString Scenarios::network(const QString &name, const QString &security)
{
    return connman().find(name, security);
}

QString Scenarios::joinAtelier()
{
    const QString identifier = network("Atelier"_s);
    if (!does("registerWifi", identifier, Secret::atelier)) {
        return {};
    }
    return isJoined(identifier) ? identifier : QString();
}

bool Scenarios::beginAfresh()
{
    m_world.spoil();
    return m_world.begin();
}

QString Scenarios::joinAtelierToStay()
{
    m_world.spoil();
    return m_world.restartBoth() ? joinAtelier() : QString();
}

bool Scenarios::isJoined(const QString &identifier)
{
    return eventually([&] {
        const QString state = connman().state(identifier);
        return state == "ready"_s || state == "online"_s;
    });
}

bool Scenarios::isRejoined(const QString &identifier)
{
    return eventually([&] { return client().heard().contains("networkConnected(\"Atelier\")"_s); }) &&
           isJoined(identifier);
}

QString Scenarios::provisioningFile(const QString &identifier)
{
    return Device::file("/var/lib/connman/%1.config"_s.arg(identifier));
}

int runScenarios(QObject &scenarios, const QStringList &arguments)
{
    qputenv("QTEST_FUNCTION_TIMEOUT", "1200000");
    return QTest::qExec(&scenarios, arguments);
}
