#include "DaemonSandbox.h"
#include "Text.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace test_support {

namespace {
// Told to the daemon where the test has them: how instrumented builds report.
const QStringList inheritedVariables = {"ASAN_OPTIONS"_s, "UBSAN_OPTIONS"_s,     "LSAN_OPTIONS"_s,
                                        "GCOV_PREFIX"_s,  "GCOV_PREFIX_STRIP"_s, "LD_LIBRARY_PATH"_s};

// What is /lib on one machine is a link to usr/lib on the next.
const QStringList programDirectories = {"/usr"_s,   "/bin"_s,   "/sbin"_s,  "/lib"_s,
                                        "/lib32"_s, "/lib64"_s, "/libx32"_s};

QStringList programDirectoryArguments()
{
    QStringList arguments;
    for (const QString &directory : programDirectories) {
        const QFileInfo info(directory);
        if (info.isSymLink()) {
            arguments << "--symlink"_s << QFile::symLinkTarget(directory) << directory;
        } else if (info.exists()) {
            arguments << "--ro-bind"_s << directory << directory;
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
        QDir(m_directory.path()).mkdir("commands"_s);
        return m_directory.filePath("commands"_s);
    }())
    , m_keyboard(m_devices.addKeyboard("event0"_s))
{
    m_devices.addLed("led8"_s);
    m_devices.addLed("led10"_s);
    const QDir root(m_directory.path());
    root.mkpath("etc/xdg/Tactora AB"_s);
    root.mkpath("var/lib/connman"_s);
    setHostName("printer\n");
}

QByteArray DaemonSandbox::hostName() const
{
    return read(hostPath("/etc/hostname"_s));
}

void DaemonSandbox::setHostName(const QByteArray &content)
{
    write(hostPath("/etc/hostname"_s), content);
}

void DaemonSandbox::mountHostName(const QByteArray &content)
{
    setHostName(content);
    m_isHostNameMounted = true;
}

void DaemonSandbox::makeHostNameUnusable()
{
    QFile::remove(hostPath("/etc/hostname"_s));
    QDir(m_directory.path()).mkdir("etc/hostname"_s);
}

QString DaemonSandbox::settingsFile(const QString &store) const
{
    return hostPath("/etc/xdg/Tactora AB/%1.conf"_s.arg(store));
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
    return read(hostPath("/var/lib/connman/"_s + name));
}

void DaemonSandbox::setConnmanFile(const QString &name, const QByteArray &content)
{
    write(hostPath("/var/lib/connman/"_s + name), content);
}

QStringList DaemonSandbox::connmanFiles() const
{
    return QDir(hostPath("/var/lib/connman"_s)).entryList(QDir::Files);
}

void DaemonSandbox::removeConnmanDirectory()
{
    QDir(hostPath("/var/lib/connman"_s)).removeRecursively();
}

QStringList DaemonSandbox::environment() const
{
    QStringList variables = m_devices.environment();
    variables << "PATH="_s + m_commands.path();
    variables << "STAND_IN_DIR="_s + m_commands.directory();
    variables << "HOME="_s + m_directory.path();
    for (const QString &name : inheritedVariables) {
        if (qEnvironmentVariableIsSet(name.toUtf8().constData())) {
            variables << name + QLatin1Char('=') + qEnvironmentVariable(name.toUtf8().constData());
        }
    }
    return variables;
}

QStringList DaemonSandbox::namespaceArguments(const QStringList &environment) const
{
    QStringList arguments = {"--die-with-parent"_s, "--clearenv"_s};
    for (const QString &variable : environment) {
        arguments << "--setenv"_s << variable.section(QLatin1Char('='), 0, 0)
                  << variable.section(QLatin1Char('='), 1);
    }
    arguments << programDirectoryArguments();
    arguments << "--bind"_s
              << "/proc"_s
              << "/proc"_s;
    arguments << "--dev-bind"_s
              << "/dev"_s
              << "/dev"_s;
    arguments << "--bind"_s << hostPath("/etc"_s) << "/etc"_s;
    arguments << "--bind"_s << hostPath("/var"_s) << "/var"_s;
    if (m_isHostNameMounted) {
        arguments << "--bind"_s << hostPath("/etc/hostname"_s) << "/etc/hostname"_s;
    }
    arguments << "--ro-bind-try"_s
              << "/etc/ld.so.cache"_s
              << "/etc/ld.so.cache"_s;
    // Where the bus, the fakes and the stand-ins have their files, and where the daemon itself was built.
    // After /var, because either may be below it.
    for (const QString &directory : {QDir::tempPath(), QStringLiteral(BUILD_DIRECTORY)}) {
        arguments << "--bind"_s << directory << directory;
    }
    return arguments;
}

} // namespace test_support
