// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <memory>

#include <foundation/string.h>
#include <glib.h>

namespace subtitles::element {

struct FreeText {
    void operator()(char* text) const { g_free(text); }
};
using OwnedText = std::unique_ptr<char, FreeText>;

/// The text with U+FFFD for what is no UTF-8: GStreamer takes no other. A file's name may hold any
/// bytes, and what is read out of it too.
inline fn::String validText(const fn::String& text) {
    return fn::String(
        OwnedText(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()))).get());
}

}  // namespace subtitles::element
