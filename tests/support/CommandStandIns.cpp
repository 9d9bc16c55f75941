#include "CommandStandIns.h"

#include "EventWait.h"
#include "Text.h"
#include <QDebug>
#include <QStandardPaths>
#include <sys/file.h>

namespace test_support {

namespace {
const QStringList programs = {"iw"_s, "ip"_s, "connmanctl"_s};

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qCritical() << "Command stand-ins:" << path << file.errorString();
    }
}
} // namespace

CommandStandIns::CommandStandIns(const QString &directory)
    : m_directory(directory)
    , m_hold(m_directory.filePath("hold"_s))
{
    m_directory.mkdir("bin"_s);
    m_directory.mkdir("scripts"_s);
    for (const QString &program : programs) {
        QFile::link(QStringLiteral(STAND_IN_PROGRAM), path() + QLatin1Char('/') + program);
    }
    m_hold.open(QIODevice::WriteOnly);
    flock(m_hold.handle(), LOCK_EX);
    clearCalls();
    script("iw list"_s, {"print Wiphy phy0"_s});
}

QString CommandStandIns::path() const
{
    return m_directory.filePath("bin"_s);
}

void CommandStandIns::script(const QString &command, const QStringList &instructions)
{
    const QString text = instructions.join(QLatin1Char('\n'));
    writeFile(m_directory.filePath("scripts/"_s + command), text.toUtf8());
}

void CommandStandIns::useOwn(const QString &program)
{
    removeProgram(program);
    QFile::link(QStandardPaths::findExecutable(program), path() + QLatin1Char('/') + program);
}

void CommandStandIns::removeProgram(const QString &program)
{
    QFile::remove(path() + QLatin1Char('/') + program);
}

void CommandStandIns::release()
{
    flock(m_hold.handle(), LOCK_UN);
}

QStringList CommandStandIns::calls() const
{
    QFile log(logFile());
    if (!log.open(QIODevice::ReadOnly)) {
        qCritical() << "Command stand-ins:" << log.fileName() << log.errorString();
        return {};
    }
    return QString::fromUtf8(log.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString CommandStandIns::logFile() const
{
    return m_directory.filePath("log"_s);
}

void CommandStandIns::clearCalls()
{
    writeFile(logFile(), {});
}

bool CommandStandIns::waitForCall(const QString &command, int times)
{
    return waitUntilFilesSatisfy({logFile()}, [&] { return calls().count(command) >= times; });
}

} // namespace test_support
