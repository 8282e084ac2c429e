// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Root passes over permissions by two of its capabilities; without them it is an owner like others.

#include "tests/support/file-rights.h"

#include <cstring>
#include <stdexcept>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace test {

namespace {

using Capabilities = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;

__user_cap_header_struct thisThread() {
    return {_LINUX_CAPABILITY_VERSION_3, 0};
}

bool setCapabilities(const Capabilities& capabilities) {
    __user_cap_header_struct header = thisThread();
    return ::syscall(SYS_capset, &header, capabilities.data()) == 0;
}

}  // namespace

FileRightsHold::FileRightsHold() {
    Capabilities capabilities{};
    static_assert(sizeof capabilities == sizeof before);
    __user_cap_header_struct header = thisThread();
    if (::syscall(SYS_capget, &header, capabilities.data()) != 0) {
        throw std::runtime_error("the capabilities cannot be told");
    }
    std::memcpy(before.data(), capabilities.data(), sizeof before);
    capabilities[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
    if (!setCapabilities(capabilities)) {
        throw std::runtime_error("the capabilities cannot be changed");
    }
}

FileRightsHold::~FileRightsHold() {
    Capabilities capabilities{};
    std::memcpy(capabilities.data(), before.data(), sizeof before);
    // What a thread may have it may always take back.
    setCapabilities(capabilities);
}

void letFileRightsHoldBehindExec() {
    // Fails for whoever is not root, and so never had them.
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
}

}  // namespace test
