// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The least that a reader for GStreamer can do: pass over the bytes once, find where the cues are,
// and make one kept buffer for each from its raw text. No time is read, no mark-up, no malformed
// byte is looked for, nothing is trimmed.

#include <cstring>
#include <string_view>
#include <vector>

#include <gst/gst.h>

#include "benchmarks/peers/reader.h"

namespace peers {
namespace {

class Lines {
public:
    explicit Lines(std::string_view text) : rest(text) {}

    bool next(std::string_view& line) {
        if (rest.empty()) {
            return false;
        }
        const void* const end = std::memchr(rest.data(), '\n', rest.size());
        const std::size_t size =
            end == nullptr ? rest.size()
                           : static_cast<std::size_t>(static_cast<const char*>(end) - rest.data());
        line = rest.substr(0, size);
        rest.remove_prefix(end == nullptr ? size : size + 1);
        return true;
    }

private:
    std::string_view rest;
};

class FloorReader : public Reader {
public:
    explicit FloorReader(Format fileFormat) : format(fileFormat) {}
    FloorReader(const FloorReader&) = delete;
    FloorReader& operator=(const FloorReader&) = delete;
    ~FloorReader() override { FloorReader::release(); }

    std::size_t read(const std::string& source) override {
        // As every reader has to get the bytes from somewhere.
        const std::string file = source;  // NOLINT(performance-unnecessary-copy-initialization)
        format == Format::SRT ? readSRT(file) : readMicroDVD(file);
        return buffers.size();
    }

    void release() override {
        for (GstBuffer* const buffer : buffers) {
            gst_buffer_unref(buffer);
        }
        buffers = std::vector<GstBuffer*>();
    }

private:
    void keep(const char* text, std::size_t size) {
        GstBuffer* const buffer = gst_buffer_new_allocate(nullptr, size, nullptr);
        gst_buffer_fill(buffer, 0, text, size);
        buffers.push_back(buffer);
    }

    void readSRT(std::string_view file) {
        Lines lines(file);
        std::string_view line;
        while (lines.next(line)) {
            if (line.find("-->") == std::string_view::npos) {
                continue;
            }
            const char* const text = line.data() + line.size() + 1;
            while (lines.next(line) && !line.empty()) {
            }
            keep(text, static_cast<std::size_t>(line.data() - text));
        }
    }

    void readMicroDVD(std::string_view file) {
        Lines lines(file);
        std::string_view line;
        while (lines.next(line)) {
            const std::size_t first = line.find('}');
            const std::size_t second = line.find('}', first + 1);
            if (second != std::string_view::npos) {
                keep(line.data() + second + 1, line.size() - second - 1);
            }
        }
    }

    Format format;
    std::vector<GstBuffer*> buffers;
};

}  // namespace

std::unique_ptr<Reader> makeFloor(Format format) {
    return std::make_unique<FloorReader>(format);
}

}  // namespace peers
