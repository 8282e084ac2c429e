// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <experimental/optional>

#include "foundation/byte-array.h"
#include "foundation/export.h"
#include "foundation/stream.h"
#include "foundation/string.h"

namespace fn {

/// Reads lines, or all there is, from a stream that it does not own and that must outlive it.
class FOUNDATION_EXPORT StreamReader {
public:
    explicit StreamReader(InputStream* stream) : source(stream) {}

    /// The next line without its end, nothing behind the last one. A line ends at LF, and one CR
    /// directly before it goes with it; a lone CR is an ordinary byte. The last line needs no LF.
    std::experimental::optional<String> readLine();

    /// At most `limit` bytes from the stream; a longer one is cut without failure. Lines that
    /// `readLine` has fetched ahead come first.
    void readEverything(ByteArray& bytes, unsigned long limit);
    ByteArray readEverything(unsigned long limit);

private:
    FOUNDATION_INTERNAL bool fill();

    String buffer;  ///< Read ahead of `readLine`.
    InputStream* source;
    std::size_t position = 0;  ///< Where the next line starts in the buffer.
};

}  // namespace fn
