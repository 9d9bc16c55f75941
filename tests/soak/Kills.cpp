// SIGKILL while files are written, as when the power fails: each file has its old or its new content, and the
// next start works at once.

#include "DaemonMethods.h"
#include "EventWait.h"
#include "Examination.h"
#include "Figure.h"
#include "RawPeer.h"
#include "Run.h"
#include "TestDevice.h"
#include "Text.h"

#include <QDBusConnectionInterface>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <csignal>
#include <functional>
#include <glib.h>

using namespace test_support;

namespace soak {

namespace {

const QByteArray corp = "wifi_020000000200_436f7270_managed_ieee8021x";

/// More than the daemon gets done before it is killed.
constexpr int callsAtAKill = 100;
constexpr int latestKillMs = 12;
/// Longer than a lock that nobody holds is respected.
constexpr int longestStartMs = 60000;

const QByteArray regionToBeginWith = "[wifi]\nregion=SE\nregionLocked=false\n";
const QString wholeRegion = "\\A\\[wifi\\]\\nregion=(SE|NO)\\nregionLocked=(true|false)\\n\\z"_s;
const QString wholeProvisioning =
    "\\A\\[service_peap\\]\\nType=wifi\\nName=Corp\\nEAP=(peap|ttls)\\nPhase2=MSCHAPV2\\z"_s;
const QString wholeHostName = "\\A(printer|(a{63}|b{63}))\\n?\\z"_s;

GVariant *hostName(bool other)
{
    return g_variant_new("(s)", QByteArray(63, other ? 'b' : 'a').constData());
}

GVariant *lock(bool other)
{
    return g_variant_new("(b)", other ? TRUE : FALSE);
}

GVariant *region(bool other)
{
    return g_variant_new("(s)", other ? "NO" : "SE");
}

GVariant *enterprise(bool other)
{
    return g_variant_new("(sssss)", "me", corp.constData(), "secret", other ? "ttls" : "peap", "MSCHAPV2");
}

/// A call that writes, and with which arguments it writes one thing or the other.
struct Writing
{
    const char *method;
    GVariant *(*arguments)(bool other);
};

constexpr std::array<Writing, 4> writings{{{"setHostName", hostName},
                                           {"setLockRegion", lock},
                                           {"setWifiRegion", region},
                                           {"registerWiFiWpa2Enterprise", enterprise}}};

bool isWhole(const QByteArray &content, const QString &pattern)
{
    return QRegularExpression(pattern).match(QString::fromUtf8(content)).hasMatch();
}

class Scene
{
public:
    explicit Scene(Run &run)
        : m_run(run)
    {
        m_device.simulator.addNetwork({{"ssid"_s, "Corp"_s}, {"security"_s, "ieee8021x"_s}});
        m_device.simulator
            .injectFault("net.connman.Service"_s, "Connect"_s,
                         FaultKind::error("net.connman.Error.Failed"_s, "no"_s), {}, 0)
            .excuse();
        m_device.daemon.sandbox().setSettings("region"_s, regionToBeginWith);
        m_device.removeRadio();
    }

    TestDevice &device() { return m_device; }

    /// The milliseconds from the start to the bus name; the daemon knows ConnMan's networks then.
    qint64 start()
    {
        m_device.simulator.clearCalls();
        QElapsedTimer timer;
        timer.start();
        const bool started = m_device.start();
        const qint64 elapsed = timer.elapsed();
        m_device.simulator.waitForCall("/ net.connman.Manager.GetServices()"_s);
        m_device.client.settle();
        return started ? elapsed : eventTimeoutMs;
    }

    /// The milliseconds until the first of the calls was answered.
    qint64 killWhile(const Writing &writing)
    {
        RawPeer peer(m_device.bus.address());
        const Member lockRegion{"/", daemonName, "setLockRegion"};
        if (writing.arguments == region) {
            peer.call(daemonName, lockRegion, lock(false));
        }
        for (int call = 0; call < callsAtAKill; ++call) {
            peer.call(daemonName, {"/", daemonName, writing.method}, writing.arguments(call % 2 == 0));
        }
        QElapsedTimer timer;
        timer.start();
        waitUntil([&peer] { return peer.waiting() < callsAtAKill; }, longestStartMs);
        const qint64 firstAnswer = timer.elapsed();
        waitUntil([] { return false; }, m_run.below(latestKillMs)); // the power fails when it fails
        m_device.daemon.sendSignal(SIGKILL);
        m_device.daemon.waitForExit();
        m_device.daemon.endLeftovers();
        waitForNameToGo();
        return firstAnswer;
    }

    /// How many files are neither old nor new; they are put right again.
    int brokenFiles()
    {
        DaemonSandbox &sandbox = m_device.daemon.sandbox();
        const QString file = QString::fromLatin1(corp) + ".config"_s;
        const QByteArray provisioning = sandbox.connmanFile(file);
        int broken = 0;
        if (!isWhole(sandbox.hostName(), wholeHostName)) {
            sandbox.setHostName("printer\n");
            ++broken;
        }
        if (!isWhole(sandbox.settings("region"_s), wholeRegion)) {
            sandbox.setSettings("region"_s, regionToBeginWith);
            ++broken;
        }
        if (!provisioning.isNull() && !isWhole(provisioning, wholeProvisioning)) {
            QFile::remove(sandbox.hostPath("/var/lib/connman/"_s + file));
            ++broken;
        }
        return broken;
    }

private:
    void waitForNameToGo()
    {
        const QDBusConnection bus = m_device.client.connection();
        const QString name = QString::fromLatin1(daemonName);
        const QDBusServiceWatcher watcher(name, bus, QDBusServiceWatcher::WatchForUnregistration);
        waitUntil([&] { return !bus.interface()->isServiceRegistered(name).value(); });
    }

    Run &m_run;
    TestDevice m_device;
};

} // namespace

void kills(Run &run, const Figure &figure)
{
    Scene scene(run);
    int killed = 0;
    int broken = 0;
    qint64 slowestStart = 0;
    qint64 slowestAnswer = 0;
    for (; killed < run.count() && !run.isOutOfTime(); ++killed) {
        slowestStart = std::max(slowestStart, scene.start());
        slowestAnswer = std::max(
            slowestAnswer, scene.killWhile(writings.at(static_cast<std::size_t>(killed) % writings.size())));
        broken += scene.brokenFiles();
    }
    slowestStart = std::max(slowestStart, scene.start());
    run.checkEqual("kills"_s, killed, run.count());
    run.checkEqual("files neither old nor new"_s, broken, 0);
    run.checkTime("slowest start after one"_s, slowestStart, figure.limit);
    run.checkTime("slowest first write after one"_s, slowestAnswer, figure.limit);
    examineEnd(run, scene.device().daemon);
}

} // namespace soak
