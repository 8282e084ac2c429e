// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Attributed text as bytes: the payload of buffers of type "application/x-attributed-text".

#pragma once

#include "foundation/auto-ptr.h"

#include "subtitles/attributed-text.h"
#include "subtitles/export.h"
#include "subtitles/gst-buffer-ptr.h"

namespace subtitles {

/// A new buffer that holds the text, without timestamps. Every run is written whole, with the
/// values of attributes that are not set. Raises `std::bad_alloc` where there is no memory for it.
SUBTITLES_EXPORT fn::AutoPtr<_GstBuffer> attributedTextToBuffer(const AttributedText& text);

/// The text that a buffer holds. The buffer stays the caller's; it is mapped for reading only while
/// this runs.
///
/// Never fails and never reads outside the buffer: a run that the buffer does not hold whole is
/// dropped with all that follows it, and bytes behind the last run are ignored. A buffer that is
/// null, empty, cannot be mapped, or tells a count that is not positive gives no runs. Mask bits
/// that mean nothing are dropped.
SUBTITLES_EXPORT AttributedText attributedTextFromBuffer(_GstBuffer* buffer);

}  // namespace subtitles
