// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <atomic>

#include "foundation/export.h"
#include "foundation/object.h"

namespace fn {

/// An object that counts who holds it. The count starts at 1: a new object goes straight into an
/// `AutoPtr`. Counting is atomic; all else is up to the derived class.
class FOUNDATION_EXPORT RefCountedBase {
public:
    /// Destroys the object through its own destructor.
    virtual void deleteInstance();
    virtual ~RefCountedBase();

    RefCountedBase(const RefCountedBase&) = delete;
    RefCountedBase& operator=(const RefCountedBase&) = delete;

    void addReference() { references.fetch_add(1, std::memory_order_relaxed); }

    /// Drops one reference, and the object with the last one.
    void releaseReference() {
        if (references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            deleteInstance();
        }
    }

protected:
    RefCountedBase() = default;

private:
    std::atomic<int> references{1};
};

class FOUNDATION_EXPORT RefCountedObject : public RefCountedBase, public Object {
public:
    ~RefCountedObject() override;

protected:
    RefCountedObject() = default;
};

}  // namespace fn
