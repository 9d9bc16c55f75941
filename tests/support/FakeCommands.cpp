#include "FakeCommands.h"

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
        qCritical() << "Fake commands:" << path << file.errorString();
    }
}
} // namespace

FakeCommands::FakeCommands(const QString &directory)
    : m_directory(directory)
    , m_hold(m_directory.filePath("hold"_s))
{
    m_directory.mkdir("bin"_s);
    m_directory.mkdir("scripts"_s);
    for (const QString &program : programs) {
        QFile::link(QStringLiteral(FAKE_COMMAND_PROGRAM), path() + QLatin1Char('/') + program);
    }
    m_hold.open(QIODevice::WriteOnly);
    flock(m_hold.handle(), LOCK_EX);
    clearCalls();
    script("iw list"_s, {"print Wiphy phy0"_s});
}

QString FakeCommands::path() const
{
    return m_directory.filePath("bin"_s);
}

QString FakeCommands::variable() const
{
    return "FAKE_COMMAND_DIR="_s + m_directory.path();
}

void FakeCommands::script(const QString &command, const QStringList &instructions)
{
    const QString text = instructions.join(QLatin1Char('\n'));
    writeFile(m_directory.filePath("scripts/"_s + command), text.toUtf8());
}

void FakeCommands::useOwn(const QString &program)
{
    removeProgram(program);
    QFile::link(QStandardPaths::findExecutable(program), path() + QLatin1Char('/') + program);
}

void FakeCommands::removeProgram(const QString &program)
{
    QFile::remove(path() + QLatin1Char('/') + program);
}

void FakeCommands::release()
{
    flock(m_hold.handle(), LOCK_UN);
}

QStringList FakeCommands::calls() const
{
    QFile log(logFile());
    if (!log.open(QIODevice::ReadOnly)) {
        qCritical() << "Fake commands:" << log.fileName() << log.errorString();
        return {};
    }
    return QString::fromUtf8(log.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString FakeCommands::logFile() const
{
    return m_directory.filePath("log"_s);
}

void FakeCommands::clearCalls()
{
    writeFile(logFile(), {});
}

bool FakeCommands::waitForCall(const QString &command, int times)
{
    return waitUntilFilesSatisfy({logFile()}, [&] { return calls().count(command) >= times; });
}

} // namespace test_support
