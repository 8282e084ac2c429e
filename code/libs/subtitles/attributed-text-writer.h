// SPDX-License-Identifier: LGPL-2.1-or-later
//
// How the readers make the buffers of a stream: as `attributedTextToBuffer` does, in shared blocks.

#pragma once

#include "foundation/auto-ptr.h"
#include "foundation/string-view.h"

#include "subtitles/attributed-text.h"
#include "subtitles/buffer-blocks.h"
#include "subtitles/gst-buffer-ptr.h"

namespace subtitles {

/// The bytes of the buffer that `attributedTextToBuffer` makes.
BufferBlocks::Bytes attributedTextToBytes(const AttributedText& text, BufferBlocks& blocks);

/// `attributedTextToBuffer`, with the buffer's bytes in one of `blocks`.
fn::AutoPtr<_GstBuffer> attributedTextToBuffer(const AttributedText& text, BufferBlocks& blocks);

/// The same two for a text of one run without attributes, as nearly every cue is.
BufferBlocks::Bytes plainTextToBytes(fn::StringView text, BufferBlocks& blocks);
fn::AutoPtr<_GstBuffer> plainTextToBuffer(fn::StringView text, BufferBlocks& blocks);

}  // namespace subtitles
