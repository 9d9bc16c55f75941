// run-arm PROGRAM ARGUMENT...: runs a 32-bit ARM program under QEMU's user emulation, with the libraries of
// SYSROOT.
//
// Qt's QProcess asks by waitid(P_PIDFD, ...) whether the kernel knows descriptors of processes. QEMU passes
// that on, so the answer is yes; but it refuses the clone(CLONE_PIDFD) that follows, and no child process
// ever starts. So the question is answered the way an older kernel does: no. Qt then forks.
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr const char *Emulator = "/usr/bin/qemu-arm-static";

bool refuseProcessDescriptors()
{
    constexpr unsigned LoadWord = BPF_LD | BPF_W | BPF_ABS;
    constexpr unsigned JumpIfEqual = BPF_JMP | BPF_JEQ | BPF_K;
    constexpr unsigned Return = BPF_RET | BPF_K;
    std::array<sock_filter, 6> filter{{
        BPF_STMT(LoadWord, offsetof(seccomp_data, nr)),
        BPF_JUMP(JumpIfEqual, SYS_waitid, 0, 3),
        BPF_STMT(LoadWord, offsetof(seccomp_data, args)),
        BPF_JUMP(JumpIfEqual, P_PIDFD, 0, 1),
        BPF_STMT(Return, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(Return, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog program{filter.size(), filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    std::vector<const char *> command{Emulator, "-L", SYSROOT};
    command.insert(command.end(), argv + 1, argv + argc + 1); // the null pointer at the end, too
    if (refuseProcessDescriptors()) {
        execv(Emulator, const_cast<char *const *>(command.data()));
    }
    std::perror("run-arm");
    return 127;
}
