// Being on a file system that has fewer ways to make files: by a filter of system calls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cerrno>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

/// From now on the calling thread and those that it starts get no file without a name (O_TMPFILE), cannot rename
/// without replacing, and cannot copy within the kernel. False where filters are not to be had.
inline bool ForbidUnnamedFiles()
{
    constexpr auto kNumber = static_cast<std::uint32_t>(offsetof(seccomp_data, nr));
    constexpr auto kThird = static_cast<std::uint32_t>(offsetof(seccomp_data, args) + 2 * sizeof(std::uint64_t));
    constexpr std::uint32_t kUnnamed = O_TMPFILE & ~O_DIRECTORY;
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kNumber),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 5, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_copy_file_range, 5, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 2),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kThird),
        BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, kUnnamed, 3, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EXDEV),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
    };
    const sock_fprog program{static_cast<unsigned short>(sizeof filter / sizeof *filter), filter};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}
