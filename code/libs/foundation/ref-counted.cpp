// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/ref-counted.h"

namespace fn {

void RefCountedBase::deleteInstance() {
    delete this;
}
RefCountedBase::~RefCountedBase() = default;
RefCountedObject::~RefCountedObject() = default;

}  // namespace fn
