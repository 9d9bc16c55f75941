#include "MountNamespace.h"

#include "Bubblewrap.h"
#include "Suite.h"
#include "Text.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <QDir>
#include <QStringList>
#include <unistd.h>
#include <vector>

namespace mount_namespace {

namespace {

/// Bytes; little, so that a test can fill it.
constexpr int DirectorySize = 1024 * 1024;

constexpr char InsideVariable[] = "IN_OWN_MOUNT_NAMESPACE";

// What dbus-daemon and the dynamic linker look for in /etc.
const QStringList neededFiles = {"/etc/ld.so.cache"_s, "/etc/passwd"_s, "/etc/group"_s,
                                 "/etc/nsswitch.conf"_s};

QStringList namespaceCommand()
{
    QStringList command = {"bwrap"_s, "--die-with-parent"_s};
    command << bubblewrap::bind("--dev-bind", "/"_s);
    for (const QString &directory : {"/etc"_s, "/var"_s}) {
        command << "--size"_s << QString::number(DirectorySize);
        command << "--tmpfs"_s << directory;
    }
    for (const QString &file : neededFiles) {
        command << bubblewrap::bind("--ro-bind-try", file);
    }
    command << bubblewrap::bindTheTests();
    command << "--cap-drop"_s
            << "ALL"_s;
    command << "--unsetenv"_s
            << "XDG_CONFIG_DIRS"_s;
    command << "--setenv"_s << QLatin1String(InsideVariable) << "1"_s;
    return command;
}

} // namespace

void startAgain(const QStringList &command, char **arguments)
{
    std::vector<QByteArray> words;
    for (const QString &word : command) {
        words.push_back(word.toLocal8Bit());
    }
    // Where the program is one for another machine's processor, its emulator comes first.
    for (const QString &word : QString::fromLatin1(EMULATOR).split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        words.push_back(word.toLocal8Bit());
    }
    words.push_back(QDir("/proc/self/exe"_s).canonicalPath().toLocal8Bit());
    for (char **argument = arguments + 1; *argument != nullptr; ++argument) {
        words.emplace_back(*argument);
    }

    std::vector<char *> pointers;
    pointers.reserve(words.size() + 1);
    for (QByteArray &word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    execvp(pointers.front(), pointers.data());
    std::cerr << pointers.front() << ": " << std::strerror(errno) << '\n';
    std::exit(EXIT_FAILURE);
}

void enter(char **arguments)
{
    if (!qEnvironmentVariableIsSet(InsideVariable)) {
        startAgain(namespaceCommand(), arguments);
    }
}

int run(int argc, char **argv)
{
    enter(argv);
    const QCoreApplication application(argc, argv);
    setIdentity();
    return runSuite();
}

} // namespace mount_namespace
