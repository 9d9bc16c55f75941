#include "PrivateBus.h"

#include "ChildProcess.h"
#include "Text.h"
#include <QDebug>
#include <QFile>

namespace test_support {

namespace {
constexpr int startTimeoutMs = 30000;
constexpr char systemVariable[] = "DBUS_SYSTEM_BUS_ADDRESS";
constexpr char sessionVariable[] = "DBUS_SESSION_BUS_ADDRESS";

// No <type>: a bus of type "system" wants to raise its file descriptor limit and to drop privileges.
const QString configurationTemplate = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>unix:path=%1/socket</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>%4
  </policy>
  <limit name="max_match_rules_per_connection">%2</limit>
  <limit name="max_replies_per_connection">%3</limit>
</busconfig>
)"_s;

void setOrUnset(const char *variable, const QByteArray &value)
{
    if (value.isNull()) {
        qunsetenv(variable);
    } else {
        qputenv(variable, value);
    }
}
} // namespace

PrivateBus::PrivateBus(const BusLimits &limits)
    : m_daemon(std::make_unique<ChildProcess>())
    , m_previousSystemAddress(qgetenv(systemVariable))
    , m_previousSessionAddress(qgetenv(sessionVariable))
{
    if (!m_directory.isValid() || !writeConfiguration(limits)) {
        qCritical() << "Private bus: no directory to put it into:" << m_directory.errorString();
        return;
    }
    start();
    exportAddress();
}

PrivateBus::~PrivateBus()
{
    stop();
    restoreEnvironment();
}

bool PrivateBus::isRunning() const
{
    return m_daemon->state() == QProcess::Running;
}

void PrivateBus::stop()
{
    stopProcess(*m_daemon);
}

bool PrivateBus::writeConfiguration(const BusLimits &limits) const
{
    QFile file(configurationFile());
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    const QString refusal =
        limits.refusedName.isEmpty() ? QString() : "<deny own=\"%1\"/>"_s.arg(limits.refusedName);
    const QString text = configurationTemplate.arg(m_directory.path())
                             .arg(limits.maxMatchRulesPerConnection)
                             .arg(limits.maxRepliesPerConnection)
                             .arg(refusal);
    return file.write(text.toUtf8()) > 0;
}

QString PrivateBus::configurationFile() const
{
    return m_directory.filePath("bus.conf"_s);
}

QString PrivateBus::logFile() const
{
    return m_directory.filePath("bus.log"_s);
}

QString PrivateBus::log() const
{
    QFile file(logFile());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void PrivateBus::start()
{
    // A file, not a pipe: nobody may be reading while the daemon complains, and it must not block then.
    m_daemon->setStandardErrorFile(logFile());
    m_daemon->start("dbus-daemon"_s, {"--nofork"_s, "--nosyslog"_s, "--print-address"_s,
                                      "--config-file="_s + configurationFile()});
    while (m_daemon->state() != QProcess::NotRunning && !m_daemon->canReadLine()) {
        if (!m_daemon->waitForReadyRead(startTimeoutMs)) {
            break;
        }
    }
    m_address = QString::fromUtf8(m_daemon->readLine()).trimmed();
    if (m_address.isEmpty()) {
        qCritical() << "Private bus: dbus-daemon gave no address:" << m_daemon->errorString() << log();
    }
}

void PrivateBus::exportAddress()
{
    qputenv(systemVariable, m_address.toUtf8());
    qputenv(sessionVariable, m_address.toUtf8());
}

void PrivateBus::restoreEnvironment() const
{
    setOrUnset(systemVariable, m_previousSystemAddress);
    setOrUnset(sessionVariable, m_previousSessionAddress);
}

} // namespace test_support
