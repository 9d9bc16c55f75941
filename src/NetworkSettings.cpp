// The settings stores: preferred Wi-Fi, region and its lock.

#include "NetworkSettings.h"

#include "ConnmanNames.h"
#include "ConnmanService.h"
#include "Latin1.h"
#include "NetworkSettingsLog.h"

Q_LOGGING_CATEGORY(logNetworkSettings, "NetworkSettings", QtCriticalMsg)

namespace {

using namespace std::chrono_literals;

constexpr QLatin1String PreferedKey = latin1("wifi/prefered");
constexpr QLatin1String RegionKey = latin1("wifi/region");
constexpr QLatin1String RegionLockedKey = latin1("wifi/regionLocked");

constexpr QLatin1String DefaultRegion = latin1("US");
constexpr QLatin1String WorldRegion = latin1("00");

/// How long the region command may take at start-up, where nobody waits for its result.
constexpr auto RegionStartUpTimeout = 5000ms;

/// The region that was last applied in this process.
QString &currentRegion()
{
    static QString region = WorldRegion;
    return region;
}

/// The name under which a Wi-Fi service is preferred; empty for any other service, and (logged) without a
/// name.
QString preferableName(const ConnmanService &service)
{
    if (service.type() != ConnmanNames::Wifi) {
        return {};
    }
    const QString name = service.name();
    if (name.isEmpty()) {
        qCCritical(logNetworkSettings) << "Unable to obtain name for service" << service.path();
    }
    return name;
}

} // namespace

NetworkSettings::NetworkSettings(QObject *parent)
    : QObject(parent)
    , m_mainSettings(QStringLiteral("main"))
    , m_regionSettings(QStringLiteral("region"))
{
    m_regionTimer.setInterval(RegionStartUpTimeout);
    m_regionTimer.setSingleShot(true);
    connect(&m_regionTimer, &QTimer::timeout, this, &NetworkSettings::timeout);
    connect(&m_regionProcess, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &NetworkSettings::finished);
}

NetworkSettings::~NetworkSettings()
{
    m_regionProcess.disconnect(this);
    Command::waitForEnd(m_regionProcess, 0ms);
}

QString NetworkSettings::getPreferedWifi() const
{
    return m_mainSettings.value(PreferedKey).toString();
}

void NetworkSettings::setPreferedWifi(const std::shared_ptr<ConnmanService> &service)
{
    const QString name = preferableName(*service);
    if (name.isEmpty()) {
        return;
    }
    m_mainSettings.setValue(PreferedKey, name);
}

void NetworkSettings::removePreferedWifi(const std::shared_ptr<ConnmanService> &service)
{
    const QString name = preferableName(*service);
    if (name.isEmpty() || name != getPreferedWifi()) {
        return;
    }
    m_mainSettings.remove(PreferedKey);
}

QString NetworkSettings::getWifiRegion() const
{
    return m_regionSettings.value(RegionKey).toString();
}

bool NetworkSettings::getLockRegion() const
{
    return m_regionSettings.value(RegionLockedKey).toBool();
}

bool NetworkSettings::setLockRegion(bool locked)
{
    m_regionSettings.setValue(RegionLockedKey, locked);
    return true;
}

bool NetworkSettings::setWifiRegion(const QString &region)
{
    if (getLockRegion()) {
        qCCritical(logNetworkSettings) << "Lock active. Unable to set region to" << region;
        return false;
    }
    if (!startRegionCommand(region) || !Command::endsNormally(m_regionProcess)) {
        qCritical() << "Failed to set region.";
        return false;
    }
    m_regionSettings.setValue(RegionKey, region);
    currentRegion() = region;
    return true;
}

void NetworkSettings::applyStoredWifiRegion()
{
    const QString stored = getWifiRegion();
    if (!stored.isEmpty()) {
        currentRegion() = stored;
    }
    if (stored.isEmpty() || stored == WorldRegion) {
        setWifiRegion(DefaultRegion);
    }
    startRegionCommand(currentRegion());
    m_regionTimer.start();
}

// A command that is still running has what is left of its own time first.
bool NetworkSettings::startRegionCommand(const QString &region)
{
    if (m_regionProcess.state() != QProcess::NotRunning) {
        Command::waitForEnd(m_regionProcess, std::chrono::milliseconds(m_regionDeadline.remainingTime()));
    }
    if (m_regionProcess.state() != QProcess::NotRunning) {
        return false;
    }
    m_regionGivenUp = false;
    m_regionDeadline.setRemainingTime(Command::Timeout);
    m_regionProcess.start(QStringLiteral("iw"),
                          {QStringLiteral("reg"), QStringLiteral("set"), QStringLiteral("%1").arg(region)});
    return true;
}

void NetworkSettings::timeout()
{
    m_regionGivenUp = true;
    m_regionProcess.kill();
    emit initDone();
}

void NetworkSettings::finished(int /*exitCode*/, QProcess::ExitStatus status)
{
    if (status == QProcess::NormalExit) {
        qCDebug(logNetworkSettings) << "The region has been set successfully.";
    } else {
        qCDebug(logNetworkSettings) << "Failed to set the region.";
    }
    if (m_regionTimer.isActive()) {
        m_regionTimer.stop();
    }
    if (!m_regionGivenUp) {
        emit initDone();
    }
}
