// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <typeinfo>
#include <utility>

#include "foundation/debug.h"
#include "foundation/exception.h"
#include "foundation/ref-counted.h"
#include "foundation/string.h"

namespace fn {

/// How an `AutoPtr` takes and drops a reference. This one is for classes that derive from
/// `RefCountedBase`; other kinds of counted objects specialise it. Never called with null.
template <class T>
struct AutoPtrTraits {
    static void take(T* object) { object->addReference(); }
    static void drop(T* object) { object->releaseReference(); }
};

/// Holds one reference to a counted object, or nothing.
///
/// Counts change safely from any thread where the object's do; the pointer itself belongs to one
/// thread at a time.
template <class T>
class AutoPtr {
public:
    AutoPtr() = default;
    /// Takes over the caller's reference: a new object's count is 1 already.
    explicit AutoPtr(T* object) : pointer(object) {}
    AutoPtr(const AutoPtr& other) : pointer(other.pointer) {
        if (pointer != nullptr) {
            AutoPtrTraits<T>::take(pointer);
        }
    }
    AutoPtr(AutoPtr&& other) noexcept : pointer(std::exchange(other.pointer, nullptr)) {}
    ~AutoPtr() { reset(); }

    AutoPtr& operator=(const AutoPtr& other) {
        if (this != &other) {
            // The new reference comes first: the old object may own the other pointer.
            T* const old = std::exchange(pointer, other.pointer);
            if (pointer != nullptr) {
                AutoPtrTraits<T>::take(pointer);
            }
            if (old != nullptr) {
                AutoPtrTraits<T>::drop(old);
            }
        }
        return *this;
    }
    AutoPtr& operator=(AutoPtr&& other) noexcept {
        if (this != &other) {
            T* const old = std::exchange(pointer, std::exchange(other.pointer, nullptr));
            if (old != nullptr) {
                AutoPtrTraits<T>::drop(old);
            }
        }
        return *this;
    }

    /// Drops the reference and holds nothing.
    void reset() {
        T* const old = std::exchange(pointer, nullptr);
        if (old != nullptr) {
            AutoPtrTraits<T>::drop(old);
        }
    }

    /// The object, or null. The pointer keeps its reference.
    T* get() const { return pointer; }
    /// Hands the reference over to the caller.
    T* release() { return std::exchange(pointer, nullptr); }

    /// Dereferencing nothing raises `NullPointerException`.
    T& operator*() const {
        checkNull();
        return *pointer;
    }
    T* operator->() const {
        checkNull();
        return pointer;
    }

    explicit operator bool() const { return pointer != nullptr; }
    bool operator==(const AutoPtr& other) const { return pointer == other.pointer; }
    bool operator!=(const AutoPtr& other) const { return pointer != other.pointer; }

    void checkNull() const {
        if (pointer == nullptr) {
            throw NullPointerException(exceptionMessage());
        }
    }

    String exceptionMessage() const {
        return String("Attempted to dereference NULL pointer of class ") +
               debug::demangleTypeName(String(typeid(T).name()));
    }

private:
    T* pointer = nullptr;
};

}  // namespace fn
