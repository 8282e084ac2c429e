// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/subtitles/watched-glib.h"

#include <cstdlib>
#include <functional>
#include <new>
#include <unordered_set>

#include <dlfcn.h>
#include <glib.h>

namespace {

/// The books are kept outside of what is watched here and of operator new.
template <class T>
struct PlainAllocator {
    using value_type = T;

    PlainAllocator() = default;
    template <class Other>
    explicit PlainAllocator(const PlainAllocator<Other>& /*other*/) {}

    T* allocate(std::size_t count) {
        // NOLINTNEXTLINE(bugprone-sizeof-expression): the set keeps an array of pointers, too
        void* const block = std::malloc(count * sizeof(T));
        if (block == nullptr) {
            throw std::bad_alloc();
        }
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t /*count*/) { std::free(block); }

    friend bool operator==(const PlainAllocator& /*a*/, const PlainAllocator& /*b*/) {
        return true;
    }
    friend bool operator!=(const PlainAllocator& /*a*/, const PlainAllocator& /*b*/) {
        return false;
    }
};

using Blocks = std::unordered_set<const void*, std::hash<const void*>, std::equal_to<const void*>,
                                  PlainAllocator<const void*>>;

bool isWatching = false;

/// Never destroyed: blocks are given back when the process ends, too.
Blocks& blocks() {
    static auto* const live = new (std::malloc(sizeof(Blocks))) Blocks;
    return *live;
}

gpointer taken(gpointer block) {
    if (isWatching && block != nullptr) {
        blocks().insert(block);
    }
    return block;
}

void given(const void* block) {
    if (!blocks().empty()) {
        blocks().erase(block);
    }
}

/// GLib's own function of that name.
template <class Function>
Function* original(Function* /*type*/, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

namespace test {

void watchGLib() {
    blocks().clear();
    isWatching = true;
}

void stopWatchingGLib() {
    isWatching = false;
}

std::size_t liveGLibBlocks() {
    return blocks().size();
}

}  // namespace test

#define VISIBLE __attribute__((visibility("default")))

// In parentheses, since some versions of GLib have macros of these names. Only calls from other
// libraries come here: what GLib takes and gives back by itself is none of theirs.
extern "C" {

VISIBLE gpointer(g_malloc)(gsize size) {
    static const auto call = original(&(g_malloc), "g_malloc");
    return taken(call(size));
}
VISIBLE gpointer(g_malloc0)(gsize size) {
    static const auto call = original(&(g_malloc0), "g_malloc0");
    return taken(call(size));
}
VISIBLE gpointer(g_malloc_n)(gsize count, gsize size) {
    static const auto call = original(&(g_malloc_n), "g_malloc_n");
    return taken(call(count, size));
}
VISIBLE gpointer(g_malloc0_n)(gsize count, gsize size) {
    static const auto call = original(&(g_malloc0_n), "g_malloc0_n");
    return taken(call(count, size));
}
VISIBLE gpointer(g_realloc)(gpointer block, gsize size) {
    static const auto call = original(&(g_realloc), "g_realloc");
    given(block);
    return taken(call(block, size));
}
VISIBLE gpointer(g_realloc_n)(gpointer block, gsize count, gsize size) {
    static const auto call = original(&(g_realloc_n), "g_realloc_n");
    given(block);
    return taken(call(block, count, size));
}
VISIBLE gpointer(g_slice_alloc)(gsize size) {
    static const auto call = original(&(g_slice_alloc), "g_slice_alloc");
    return taken(call(size));
}
VISIBLE gpointer(g_slice_alloc0)(gsize size) {
    static const auto call = original(&(g_slice_alloc0), "g_slice_alloc0");
    return taken(call(size));
}
VISIBLE void(g_free)(gpointer block) {
    static const auto call = original(&(g_free), "g_free");
    given(block);
    call(block);
}
#if GLIB_CHECK_VERSION(2, 76, 0)
VISIBLE void(g_free_sized)(gpointer block, size_t size) {
    static const auto call = original(&(g_free_sized), "g_free_sized");
    given(block);
    call(block, size);
}
#endif
VISIBLE void(g_slice_free1)(gsize size, gpointer block) {
    static const auto call = original(&(g_slice_free1), "g_slice_free1");
    given(block);
    call(size, block);
}

}  // extern "C"
