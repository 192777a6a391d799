// Being bound by file permissions, which root otherwise is not.
#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

/// Takes the calling thread's effective capabilities away while it lives: its files' modes count, even for root.
class BoundByPermissions
{
public:
    BoundByPermissions()
    {
        syscall(SYS_capget, &m_header, m_before);
        __user_cap_data_struct none[2] = {m_before[0], m_before[1]};
        none[0].effective = none[1].effective = 0;
        syscall(SYS_capset, &m_header, none);
    }
    ~BoundByPermissions() { syscall(SYS_capset, &m_header, m_before); }
    BoundByPermissions(const BoundByPermissions&) = delete;
    BoundByPermissions& operator=(const BoundByPermissions&) = delete;

private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct m_before[2] = {};
};
