// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the process with a message where `condition` does not hold, in every kind of build, so that
/// a fuzzer keeps the input and a replay fails.
#define FUZZ_REQUIRE(condition)                                                            \
    do {                                                                                   \
        if (!(condition)) {                                                                \
            std::fprintf(stderr, "%s:%d: required: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                  \
        }                                                                                  \
    } while (false)
