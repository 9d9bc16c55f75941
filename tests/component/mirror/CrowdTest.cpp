// A long life in a crowded place: thousands of services come, change and go, and none is lost although the
// bus allows a connection no more than 512 match rules; and none that has gone is kept.

#include "ConnmanFixture.h"
#include "ConnmanManager.h"
#include "ManagerScene.h"
#include "Suite.h"
#include "Text.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QHash>
#include <QLoggingCategory>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <memory>
#include <vector>

using namespace test_support;

namespace {

/// More than the bus allows a connection to have match rules.
constexpr int MoreThanTheBusAllows = 600;
constexpr int AWholeLife = 5000;
/// As many at a time: every announcement lists all services there are, and each known one is read again.
constexpr uint AtATime = 5;

QString numberedPath(int number)
{
    return ConnmanFixture::pathOf("wifi_crowd_%1"_s.arg(number));
}

/// Every State that each service has reported, by identifier.
using Reports = QHash<QString, QVector<State>>;

/// Services that nobody introduced to the manager, each made like the manager's.
std::vector<std::unique_ptr<ConnmanService>> crowd()
{
    std::vector<std::unique_ptr<ConnmanService>> services;
    services.reserve(MoreThanTheBusAllows);
    for (int number = 0; number < MoreThanTheBusAllows; ++number) {
        services.push_back(std::make_unique<ConnmanService>(ConnmanFixture::connection(),
                                                            QDBusObjectPath(numberedPath(number)), nullptr));
    }
    return services;
}

/// How many of them hear of a property that ConnMan changes in each.
int toldOfAChange(ConnmanFixture &fixture, const std::vector<std::unique_ptr<ConnmanService>> &services)
{
    for (const auto &service : services) {
        fixture.emitPropertyChanged(service->path(), "Strength"_s, QVariant::fromValue(uchar(61)));
    }
    fixture.deliver();
    return static_cast<int>(std::count_if(services.cbegin(), services.cend(), [](const auto &service) {
        return service->properties().contains("Strength"_s);
    }));
}

/// How many times a service is read when its state changes.
int readsOfAChange(ConnmanFixture &fixture, const QDBusObjectPath &path)
{
    fixture.connman().clearCalls();
    fixture.emitPropertyChanged(path.path(), StateKey, "idle"_s);
    fixture.deliver();
    return fixture.connman().calls().count(ConnmanFixture::getPropertiesCall(path.path()));
}

/// Runs the event loop until the manager has that many services; woken by what happens, not by the clock,
/// because a life waits two thousand times.
bool hasServices(const ConnmanManager &manager, int count)
{
    QTimer wakeUp;
    wakeUp.start(1000);
    const QDeadlineTimer deadline(60000);
    while (manager.services().size() != count && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return manager.services().size() == count;
}

} // namespace

class CrowdTest : public ConnmanFixture
{
    Q_OBJECT

private slots:
    void everyServiceIsHeardByOneSubscription();
    void fiveThousandServicesLoseNoStateChange();
    void removedServiceIsReleased();
    void returnsOfOneServiceAreReadOncePerChange();
};

void CrowdTest::everyServiceIsHeardByOneSubscription()
{
    const auto services = crowd();
    QCOMPARE(toldOfAChange(*this, services), MoreThanTheBusAllows);
}

void CrowdTest::fiveThousandServicesLoseNoStateChange()
{
    QLoggingCategory::setFilterRules({}); // a life's debug lines take longer than the life
    ConnmanManager manager(connection(), nullptr);
    Reports reports;
    connect(&manager, &ConnmanManager::serviceStateChanged, this,
            [&reports](const std::shared_ptr<ConnmanService> &service) {
                reports[service->identifier()] << service->state();
            });
    for (uint first = 0; first < AWholeLife; first += AtATime) {
        connman().addServices(first, AtATime);
        QVERIFY(hasServices(manager, AtATime));
        const QStringList identifiers = connman().services();
        for (const QString &identifier : identifiers) {
            connman().setServiceProperty(identifier, StateKey, "ready"_s);
        }
        deliver();
        for (const QString &identifier : identifiers) {
            connman().removeService(identifier);
        }
        QVERIFY(hasServices(manager, 0));
        connman().clearCalls();
        log().clear();
    }
    QCOMPARE(reports.size(), AWholeLife);
    const QVector<State> aLife{State::Idle, State::Ready};
    for (auto it = reports.cbegin(); it != reports.cend(); ++it) {
        QVERIFY2(it.value() == aLife, qPrintable(it.key()));
    }
}

void CrowdTest::removedServiceIsReleased()
{
    const QDBusObjectPath path = addService("wifi_crowd_0"_s);
    ManagerScene filled(*this);
    const std::weak_ptr<ConnmanService> service = filled.manager.services().constFirst();
    QVERIFY(!service.expired());
    filled.manager.remService(path);
    // The change of state that filled it keeps it until that has settled.
    QTRY_VERIFY(service.expired());
}

// Each one that was removed would otherwise go on hearing, and reading, what its path tells.
void CrowdTest::returnsOfOneServiceAreReadOncePerChange()
{
    constexpr int Returns = 50;
    const QDBusObjectPath path = addService("wifi_crowd_0"_s);
    ManagerScene filled(*this);
    for (int count = 0; count < Returns; ++count) {
        filled.manager.remService(path);
        QVERIFY(filled.manager.addService(path));
    }
    filled.forget();
    QTRY_COMPARE_WITH_TIMEOUT(readsOfAChange(*this, path), 1, 60000);
}

static const Suite<CrowdTest> crowdTest;
#include "CrowdTest.moc"
