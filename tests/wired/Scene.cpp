#include "Scene.h"

#include "EventWait.h"
#include <algorithm>
#include <QDBusArgument>
#include <QTest>

namespace {

// The daemon looks after one technology, "wifi", and this ConnMan has none.
const QString noTechnology = QStringLiteral("ConnmanTechnology|critical|");
const QString noWlan = QStringLiteral("default|critical|WLAN not supported on this board.");
// Asked for whenever the link comes up: an IPv6 address set by hand, which nobody has set.
const QString noIpv6Address =
    QStringLiteral("ConnmanService.properties|critical|Missing property \"Address\"");

} // namespace

Scene::Scene()
    : toleratedProblems{noTechnology, noWlan, noIpv6Address}
{
    daemon.sandbox().commands().script(QStringLiteral("iw list"), {});
}

Scene::~Scene()
{
    // First to its end: until then it may have more to say.
    if (daemon.isRunning()) {
        QVERIFY2(daemon.stop(), "the daemon did not end with status 0 after SIGTERM");
    }
    const QStringList problems = daemon.log().problems();
    for (const QString &problem : problems) {
        const auto begins = [&problem](const QString &beginning) { return problem.startsWith(beginning); };
        if (std::any_of(toleratedProblems.cbegin(), toleratedProblems.cend(), begins)) {
            daemon.log().takeProblem(problem);
        }
    }
}

bool Scene::startDaemon()
{
    return daemon.start() && client.waitForName();
}

bool Scene::bringUp()
{
    backend->startDhcpServer();
    backend->plugCable();
    backend->startConnman();
    return startDaemon() &&
           QTest::qWaitFor([this] { return daemonKnowsTheLease(); }, test_support::eventTimeoutMs);
}

QVariantMap Scene::listedService()
{
    return subMap(client.call("networks").toMap(), backend->service());
}

bool Scene::daemonKnowsTheLease()
{
    const QString known =
        subMap(listedService(), QStringLiteral("IPv4")).value(QStringLiteral("Address")).toString();
    return !known.isEmpty() && backend->addresses() == QStringList{known + QStringLiteral("/24")};
}

QVariantMap subMap(const QVariantMap &map, const QString &key)
{
    return qdbus_cast<QVariantMap>(map.value(key));
}
