// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/object.h"

#include <typeinfo>

#include "foundation/debug.h"

namespace fn {

String Object::toString() const {
    return debug::demangleTypeName(String(typeid(*this).name()));
}
Object::~Object() = default;

}  // namespace fn
