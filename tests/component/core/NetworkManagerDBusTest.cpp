#include "NetworkManagerDBus.h"
#include "LogCapture.h"
#include "NetworkManager.h"
#include "PrivateBus.h"
#include "Suite.h"
#include "Text.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QTemporaryDir>
#include <QTest>

using namespace test_support;

/// Claiming the object on a bus where something else of the process has it.
class NetworkManagerDBusTest : public QObject
{
    Q_OBJECT
private slots:
    void takenObjectIsReportedAndTheNameNotAskedFor();
    void adaptorBelongsToItsNetworkManager();
};

namespace {
const QString daemonName = "com.tactora.NetworkManager"_s;

bool isNameTaken()
{
    return QDBusConnection::systemBus().interface()->isServiceRegistered(daemonName);
}
} // namespace

void NetworkManagerDBusTest::takenObjectIsReportedAndTheNameNotAskedFor()
{
    NetworkManager manager(nullptr);
    QObject other;
    QVERIFY(QDBusConnection::systemBus().registerObject("/"_s, &other));
    LogCapture log;

    const NetworkManagerDBus adaptor(&manager);
    QCOMPARE(log.lines("default"_s, QtCriticalMsg),
             QStringList("Unable to register object on system-bus."_s));
    QVERIFY(!isNameTaken());
    QDBusConnection::systemBus().unregisterObject("/"_s);
}

void NetworkManagerDBusTest::adaptorBelongsToItsNetworkManager()
{
    NetworkManager manager(nullptr);
    LogCapture log;

    const auto *adaptor = new NetworkManagerDBus(&manager);
    QCOMPARE(adaptor->parent(), &manager);
    QCOMPARE(QDBusConnection::systemBus().objectRegisteredAt("/"_s), &manager);
    QVERIFY(isNameTaken());
    QCOMPARE(log.takeCriticals(), QStringList());
    QDBusConnection::systemBus().unregisterService(daemonName);
}

// The object is built without settings of the machine it runs on.
static const Suite<NetworkManagerDBusTest> networkManagerDBusTest;

int main(int argc, char **argv)
{
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_DIRS", settings.path().toLocal8Bit());
    const PrivateBus bus;
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName("Tactora AB"_s);
    return runSuite();
}

#include "NetworkManagerDBusTest.moc"
