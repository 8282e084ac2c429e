// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include "foundation/export.h"
#include "foundation/string.h"

namespace fn {

/// Anything that can print itself for a log.
class FOUNDATION_EXPORT Object {
public:
    /// The class name, unless a class has more to say.
    virtual String toString() const;
    virtual ~Object();

protected:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
};

}  // namespace fn
