#include "Service.h"

#include "Command.h"

#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>

namespace {

constexpr int startTimeoutMs = 30000;
constexpr int stopTimeoutMs = 20000;

} // namespace

Service::Service(const QString &program, const QStringList &arguments)
    : m_logFile(QStringLiteral("/run/results/log/%1.log").arg(QFileInfo(program).fileName()))
{
    m_process.setProgram(program);
    m_process.setArguments(arguments);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.setStandardOutputFile(m_logFile, QIODevice::Append);
    m_process.setStandardInputFile(QProcess::nullDevice());
}

Service::~Service()
{
    stop();
}

bool Service::start()
{
    m_process.start();
    return m_process.waitForStarted(startTimeoutMs);
}

bool Service::stop()
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

QString Service::log() const
{
    QFile file(m_logFile);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(m_mark)) {
        return {};
    }
    return QString::fromUtf8(file.readAll());
}

void Service::markLog()
{
    m_mark = QFileInfo(m_logFile).size();
}

void Service::setVariable(const QString &name, const QString &value)
{
    QProcessEnvironment environment = m_process.processEnvironment();
    if (environment.isEmpty()) {
        environment = QProcessEnvironment::systemEnvironment();
    }
    environment.insert(name, value);
    m_process.setProcessEnvironment(environment);
}
