// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What is measured: ways to get from the bytes of a subtitle file to its cues. All of them get the
// same bytes, keep what they made of them until the clock has stopped, and tell how many cues that
// was, so that none is fast because it left something out.

#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "benchmarks/peers/film-file.h"

namespace peers {

class Reader {
public:
    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    virtual ~Reader() = default;

    /// Puts the bytes where the reader's library takes them from. The clock stands still.
    virtual void prepare(const std::string& /*file*/) {}

    /// Reads the file, which is the one that was prepared, and keeps what is in it. The clock runs.
    /// Gives the number of cues.
    virtual std::size_t read(const std::string& file) = 0;

    /// Drops what `read` has kept. The clock stands still.
    virtual void release() = 0;
};

/// `subtitles`, from bytes to sanitized buffers. An empty encoding asks for detection. The style
/// sheets of SMI are read where a file is analysed, and not where it is loaded.
std::unique_ptr<Reader> makeSubtitles(Format format, const std::string& encoding,
                                      bool withStyleSheets = false);

/// A bare loop that finds the cues' bytes and makes one kept GstBuffer for each. SRT and MicroDVD.
std::unique_ptr<Reader> makeFloor(Format format);

/// libavformat's demuxer and libavcodec's decoder for each event. All formats.
std::unique_ptr<Reader> makeFFmpeg();

/// GStreamer's subparse, fed through its pads. All formats but ASS.
std::unique_ptr<Reader> makeSubparse();

/// libass. ASS only.
std::unique_ptr<Reader> makeLibass();

/// libxml2's SAX interface for HTML, with handlers that do nothing. Tells the number of elements.
std::unique_ptr<Reader> makeLibxml2();

/// uchardet, which most of detecting an encoding is, alone.
std::unique_ptr<Reader> makeUchardet();

/// Our detector, which is uchardet and a score of its own.
std::unique_ptr<Reader> makeDetector();

}  // namespace peers
