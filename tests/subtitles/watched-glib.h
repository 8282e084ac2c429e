// SPDX-License-Identifier: LGPL-2.1-or-later
//
// GLib's allocator, watched. A program that is linked with this takes every call of another library
// for a block of GLib's; the calls go on to GLib.

#pragma once

#include <cstddef>

namespace test {

/// Forgets all blocks, and notes those that are taken from now on. For one thread.
void watchGLib();

/// Notes no more blocks.
void stopWatchingGLib();

/// The blocks that were taken while GLib was watched, and not given back until now.
std::size_t liveGLibBlocks();

}  // namespace test
