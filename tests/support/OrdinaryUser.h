#pragma once

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

/// Lets the permissions of files count for as long as it lives, also when root runs the test.
class OrdinaryUser
{
public:
    OrdinaryUser()
    {
        syscall(SYS_capget, &mHeader, mFormer);
        __user_cap_data_struct reduced[_LINUX_CAPABILITY_U32S_3] = {mFormer[0], mFormer[1]};
        reduced[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
        syscall(SYS_capset, &mHeader, reduced);
    }
    ~OrdinaryUser() { syscall(SYS_capset, &mHeader, mFormer); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    __user_cap_header_struct mHeader{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct mFormer[_LINUX_CAPABILITY_U32S_3]{};
};
