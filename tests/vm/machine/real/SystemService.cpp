#include "SystemService.h"

#include "Eventually.h"

#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>

namespace {

constexpr int startTimeoutMs = 30000;
constexpr int stopTimeoutMs = 20000;

} // namespace

SystemService::SystemService(const QString &program, const QStringList &arguments)
    : m_logFile(QStringLiteral("/run/results/log/%1.log").arg(QFileInfo(program).fileName()))
{
    m_process.setProgram(program);
    m_process.setArguments(arguments);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setStandardOutputFile(m_logFile, QIODevice::Append);
    m_process.setStandardInputFile(QProcess::nullDevice());
}

SystemService::~SystemService()
{
    end(); // stop() is virtual
}

bool SystemService::start()
{
    m_process.start();
    return m_process.waitForStarted(startTimeoutMs);
}

bool SystemService::stop()
{
    return end();
}

bool SystemService::end()
{
    if (!isRunning()) {
        return true;
    }
    m_process.terminate();
    if (eventually([this] { return !isRunning(); }, stopTimeoutMs)) {
        return true;
    }
    m_process.kill();
    m_process.waitForFinished(stopTimeoutMs);
    return false;
}

QString SystemService::log() const
{
    QFile file(m_logFile);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(m_mark)) {
        return {};
    }
    return QString::fromUtf8(file.readAll());
}

void SystemService::markLog()
{
    m_mark = QFileInfo(m_logFile).size();
}

void SystemService::setVariable(const QString &name, const QString &value)
{
    QProcessEnvironment environment = m_process.processEnvironment();
    if (environment.isEmpty()) {
        environment = QProcessEnvironment::systemEnvironment();
    }
    environment.insert(name, value);
    m_process.setProcessEnvironment(environment);
}

std::unique_ptr<Program> makeConnman()
{
    return std::make_unique<SystemService>(QStringLiteral("/usr/sbin/connmand"),
                                           QStringList{QStringLiteral("--nodaemon")});
}

std::unique_ptr<Program> makeDaemon(const QString &keyboardDevice)
{
    auto daemon = std::make_unique<SystemService>(QStringLiteral(DAEMON_PROGRAM),
                                                  QStringList{QStringLiteral("--device"), keyboardDevice});
    // World::waitUntilStarted() reads this category's debug lines.
    daemon->setVariable(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("NetworkSettings.debug=true"));
    return daemon;
}
