#include "Scene.h"

#include "EventWait.h"
#include "Text.h"
#include <algorithm>
#include <QTest>

namespace {

// The daemon looks after one technology, "wifi", and this ConnMan has none.
const QString noTechnology = "ConnmanTechnology|critical|"_s;
const QString noWlan = "default|critical|WLAN not supported on this board."_s;
// Asked for whenever the link comes up: an IPv6 address set by hand, which nobody has set.
const QString noIpv6Address = "ConnmanService.properties|critical|Missing property \"Address\""_s;

} // namespace

Scene::Scene()
    : toleratedProblems{noTechnology, noWlan, noIpv6Address}
{
    daemon.sandbox().commands().script("iw list"_s, {});
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
    surroundings.startDhcpServer();
    surroundings.plugCable();
    surroundings.startConnman();
    return startDaemon() &&
           QTest::qWaitFor([this] { return daemonKnowsTheLease(); }, test_support::eventTimeoutMs);
}

QVariantMap Scene::listedService()
{
    return client.call("networks").toMap().value(surroundings.service()).toMap();
}

bool Scene::daemonKnowsTheLease()
{
    const QString known = listedService().value("IPv4"_s).toMap().value("Address"_s).toString();
    return !known.isEmpty() && surroundings.addresses() == QStringList{known + "/24"_s};
}
