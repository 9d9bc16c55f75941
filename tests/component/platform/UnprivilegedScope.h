#pragma once

#include <QFile>
#include <unistd.h>

/// For the temporary directories, which are closed to all but their owner.
constexpr QFile::Permissions letEveryoneIn = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                             QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                             QFile::ExeOther;

/// While it lives, file permissions count for this process as for anyone, though it may be root's.
class UnprivilegedScope
{
public:
    UnprivilegedScope()
        : m_wasRoot(geteuid() == 0)
    {
        if (m_wasRoot && setresuid(nobody, nobody, 0) != 0) {
            qFatal("cannot become an ordinary user");
        }
    }
    ~UnprivilegedScope()
    {
        if (m_wasRoot && setresuid(0, 0, 0) != 0) {
            qFatal("cannot become root again");
        }
    }
    UnprivilegedScope(const UnprivilegedScope &) = delete;
    UnprivilegedScope &operator=(const UnprivilegedScope &) = delete;

private:
    static constexpr uid_t nobody = 65534;
    const bool m_wasRoot;
};
