// SPDX-License-Identifier: LGPL-2.1-or-later
//
// libass: one call from bytes to a track of events, whose texts stay raw as ours do. It makes no
// buffers.

#include <cstdarg>
#include <stdexcept>

#include <ass/ass.h>

#include "benchmarks/peers/reader.h"

namespace peers {
namespace {

class LibassReader : public Reader {
public:
    LibassReader() : library(ass_library_init()) {
        if (library == nullptr) {
            throw std::runtime_error("libass does not start");
        }
        ass_set_message_cb(
            library, [](int, const char*, std::va_list, void*) {}, nullptr);
    }
    LibassReader(const LibassReader&) = delete;
    LibassReader& operator=(const LibassReader&) = delete;
    ~LibassReader() override {
        LibassReader::release();
        ass_library_done(library);
    }

    std::size_t read(const std::string& file) override {
        // The bytes are only read, but the interface does not say so.
        track = ass_read_memory(library, const_cast<char*>(file.data()), file.size(), nullptr);
        return track == nullptr ? 0 : static_cast<std::size_t>(track->n_events);
    }

    void release() override {
        if (track != nullptr) {
            ass_free_track(track);
            track = nullptr;
        }
    }

private:
    ASS_Library* library;
    ASS_Track* track = nullptr;
};

}  // namespace

std::unique_ptr<Reader> makeLibass() {
    return std::make_unique<LibassReader>();
}

}  // namespace peers
