#include "DaemonSandbox.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace test_support {

namespace {
// Told to the daemon where the test has them: how instrumented builds report.
const QStringList inheritedVariables = {
    QStringLiteral("ASAN_OPTIONS"), QStringLiteral("UBSAN_OPTIONS"),     QStringLiteral("LSAN_OPTIONS"),
    QStringLiteral("GCOV_PREFIX"),  QStringLiteral("GCOV_PREFIX_STRIP"), QStringLiteral("LD_LIBRARY_PATH")};

// What is /lib on one machine is a link to usr/lib on the next.
const QStringList programDirectories = {
    QStringLiteral("/usr"),   QStringLiteral("/bin"),   QStringLiteral("/sbin"),  QStringLiteral("/lib"),
    QStringLiteral("/lib32"), QStringLiteral("/lib64"), QStringLiteral("/libx32")};

QStringList programDirectoryArguments()
{
    QStringList arguments;
    for (const QString &directory : programDirectories) {
        const QFileInfo info(directory);
        if (info.isSymLink()) {
            arguments << QStringLiteral("--symlink") << QFile::symLinkTarget(directory) << directory;
        } else if (info.exists()) {
            arguments << QStringLiteral("--ro-bind") << directory << directory;
        }
    }
    return arguments;
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qCritical() << "Sandbox:" << path << file.errorString();
    }
}
} // namespace

DaemonSandbox::DaemonSandbox()
    : m_commands([this] {
        QDir(m_directory.path()).mkdir(QStringLiteral("commands"));
        return m_directory.filePath(QStringLiteral("commands"));
    }())
    , m_keyboard(m_devices.addKeyboard(QStringLiteral("event0")))
{
    m_devices.addLed(QStringLiteral("led8"));
    m_devices.addLed(QStringLiteral("led10"));
    const QDir root(m_directory.path());
    root.mkpath(QStringLiteral("etc/xdg/Tactora AB"));
    root.mkpath(QStringLiteral("var/lib/connman"));
    setHostName("printer\n");
}

QByteArray DaemonSandbox::hostName() const
{
    return read(hostPath(QStringLiteral("/etc/hostname")));
}

void DaemonSandbox::setHostName(const QByteArray &content)
{
    write(hostPath(QStringLiteral("/etc/hostname")), content);
}

void DaemonSandbox::mountHostName(const QByteArray &content)
{
    setHostName(content);
    m_isHostNameMounted = true;
}

void DaemonSandbox::makeHostNameUnusable()
{
    QFile::remove(hostPath(QStringLiteral("/etc/hostname")));
    QDir(m_directory.path()).mkdir(QStringLiteral("etc/hostname"));
}

QString DaemonSandbox::settingsFile(const QString &store) const
{
    return hostPath(QStringLiteral("/etc/xdg/Tactora AB/%1.conf").arg(store));
}

QByteArray DaemonSandbox::settings(const QString &store) const
{
    return read(settingsFile(store));
}

void DaemonSandbox::setSettings(const QString &store, const QByteArray &content)
{
    write(settingsFile(store), content);
}

QByteArray DaemonSandbox::connmanFile(const QString &name) const
{
    return read(hostPath(QStringLiteral("/var/lib/connman/") + name));
}

void DaemonSandbox::setConnmanFile(const QString &name, const QByteArray &content)
{
    write(hostPath(QStringLiteral("/var/lib/connman/") + name), content);
}

QStringList DaemonSandbox::connmanFiles() const
{
    return QDir(hostPath(QStringLiteral("/var/lib/connman"))).entryList(QDir::Files);
}

void DaemonSandbox::removeConnmanDirectory()
{
    QDir(hostPath(QStringLiteral("/var/lib/connman"))).removeRecursively();
}

QStringList DaemonSandbox::environment() const
{
    QStringList variables = m_devices.environment();
    variables << QStringLiteral("PATH=") + m_commands.path();
    variables << QStringLiteral("STAND_IN_DIR=") + m_commands.directory();
    variables << QStringLiteral("HOME=") + m_directory.path();
    for (const QString &name : inheritedVariables) {
        if (qEnvironmentVariableIsSet(name.toUtf8().constData())) {
            variables << name + QLatin1Char('=') + qEnvironmentVariable(name.toUtf8().constData());
        }
    }
    return variables;
}

QStringList DaemonSandbox::namespaceArguments(const QStringList &environment) const
{
    QStringList arguments = {QStringLiteral("--die-with-parent"), QStringLiteral("--clearenv")};
    for (const QString &variable : environment) {
        arguments << QStringLiteral("--setenv") << variable.section(QLatin1Char('='), 0, 0)
                  << variable.section(QLatin1Char('='), 1);
    }
    arguments << programDirectoryArguments();
    arguments << QStringLiteral("--bind") << QStringLiteral("/proc") << QStringLiteral("/proc");
    arguments << QStringLiteral("--dev-bind") << QStringLiteral("/dev") << QStringLiteral("/dev");
    arguments << QStringLiteral("--bind") << hostPath(QStringLiteral("/etc")) << QStringLiteral("/etc");
    arguments << QStringLiteral("--bind") << hostPath(QStringLiteral("/var")) << QStringLiteral("/var");
    if (m_isHostNameMounted) {
        arguments << QStringLiteral("--bind") << hostPath(QStringLiteral("/etc/hostname"))
                  << QStringLiteral("/etc/hostname");
    }
    arguments << QStringLiteral("--ro-bind-try") << QStringLiteral("/etc/ld.so.cache")
              << QStringLiteral("/etc/ld.so.cache");
    // Where the bus, the fakes and the stand-ins have their files, and where the daemon itself was built.
    // After /var, because either may be below it.
    for (const QString &directory : {QDir::tempPath(), QStringLiteral(BUILD_DIRECTORY)}) {
        arguments << QStringLiteral("--bind") << directory << directory;
    }
    return arguments;
}

} // namespace test_support
