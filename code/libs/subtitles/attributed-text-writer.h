// SPDX-License-Identifier: LGPL-2.1-or-later
//
// How the readers make the buffers of a stream: as `attributedTextToBuffer` does, in shared blocks.

#pragma once

#include <cstddef>
#include <list>

#include "foundation/auto-ptr.h"
#include "foundation/string-view.h"
#include "foundation/string.h"

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

/// The bytes of runs that come one after the other: a record of a run takes three times as much
/// memory, which counts where a cue has millions of them.
class RunBytes {
public:
    std::size_t count() const { return runCount; }

    /// Behind what there is.
    void append(const AttributedText::Run& run);

    /// As `attributedTextToBytes` gives them for `first` and, behind it, the runs here, of which
    /// none is left.
    BufferBlocks::Bytes take(const AttributedText& first, BufferBlocks& blocks);

private:
    std::size_t runCount = 0;
    std::size_t byteCount = 0;
    std::list<fn::String> pieces;  ///< In pieces, since one text of this size moves when it grows.
};

}  // namespace subtitles
