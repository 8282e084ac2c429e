// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/debug.h"

#include <cstdlib>
#include <memory>

#include <cxxabi.h>

namespace fn::debug {

String demangleTypeName(const String& name) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> readable(
        abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status), &std::free);
    return status == 0 ? String(readable.get()) : name;
}

}  // namespace fn::debug
