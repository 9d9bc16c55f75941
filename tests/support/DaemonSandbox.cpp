#include "DaemonSandbox.h"
#include "Bubblewrap.h"
#include "Text.h"

#include <QDir>
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
            arguments << bubblewrap::bind("--ro-bind", directory);
        }
    }
    return arguments;
}
} // namespace

DaemonSandbox::DaemonSandbox()
    : DeviceFiles(directory.path())
    , m_commands([this] {
        QDir(directory.path()).mkdir("commands"_s);
        return directory.filePath("commands"_s);
    }())
    , m_keyboard(m_devices.addKeyboard("event0"_s))
{
    m_devices.addLed("led8"_s);
    m_devices.addLed("led10"_s);
    clear();
    setHostName("printer\n");
}

void DaemonSandbox::mountHostName(const QByteArray &content)
{
    setHostName(content);
    m_isHostNameMounted = true;
}

QStringList DaemonSandbox::environment() const
{
    QStringList variables = m_devices.environment() + m_commands.environment();
    variables << "HOME="_s + directory.path();
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
    arguments << bubblewrap::bind("--bind", "/proc"_s) << bubblewrap::bind("--dev-bind", "/dev"_s);
    arguments << "--bind"_s << hostPath("/etc"_s) << "/etc"_s;
    arguments << "--bind"_s << hostPath("/var"_s) << "/var"_s;
    if (m_isHostNameMounted) {
        arguments << "--bind"_s << hostPath(hostNameFile) << hostNameFile;
    }
    arguments << bubblewrap::bind("--ro-bind-try", "/etc/ld.so.cache"_s) << bubblewrap::bindTheTests();
    return arguments;
}

} // namespace test_support
