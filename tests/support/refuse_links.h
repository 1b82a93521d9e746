#pragma once

#include <errno.h>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <stddef.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <array>
#include <cstdint>

namespace Corvetape {

/// From now on the disks of this thread, and of what it starts, know one name for each file, and no file
/// without a name, as those of cameras do. False if the system does not allow it. It is for good.
inline bool RefuseHardLinks() {
    constexpr auto call = static_cast<uint32_t>(offsetof(seccomp_data, nr));
    constexpr auto openFlags = static_cast<uint32_t>(offsetof(seccomp_data, args) + 2 * sizeof(uint64_t));
    constexpr uint32_t nameless = O_TMPFILE & ~O_DIRECTORY;
#ifdef SYS_link
    constexpr uint32_t link = SYS_link;
#else
    constexpr uint32_t link = SYS_linkat;
#endif
    std::array<sock_filter, 8> filter = {{
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, call},
        {BPF_JMP | BPF_JEQ | BPF_K, 4, 0, link},
        {BPF_JMP | BPF_JEQ | BPF_K, 3, 0, SYS_linkat},
        {BPF_JMP | BPF_JEQ | BPF_K, 0, 3, SYS_openat},
        {BPF_LD | BPF_W | BPF_ABS, 0, 0, openFlags},
        {BPF_JMP | BPF_JSET | BPF_K, 0, 1, nameless},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | EPERM},
        {BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
    }};
    const sock_fprog program{filter.size(), filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

}  // namespace Corvetape
