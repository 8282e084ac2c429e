// SPDX-License-Identifier: LGPL-2.1-or-later
//
// uchardet, with a sum over the bytes beside it that tells Central from Western European text.

#include "subtitles/charset-detector.h"

#include <cstdint>
#include <limits>
#include <type_traits>

#include <uchardet/uchardet.h>

#include "foundation/file-stream.h"

#include "subtitles/charset-frequencies.h"
#include "subtitles/charset-names.h"

namespace subtitles {

class CharsetDetectorImpl {
public:
    void pushData(const char* data, std::uint32_t size) {
        for (std::uint32_t i = 0; i < size; ++i) {
            totalScore += frequencies[static_cast<unsigned char>(data[i])];
        }
        // Fails for want of memory alone; the text then has no answer, or an earlier one.
        uchardet_handle_data(detector.get(), data, size);
    }

    void done() {
        uchardet_data_end(detector.get());
        detected = charsetName(uchardet_get_charset(detector.get()), totalScore);
    }

    const fn::String& charset() const { return detected; }

private:
    struct Delete {
        void operator()(uchardet_t handle) const { uchardet_delete(handle); }
    };

    std::unique_ptr<std::remove_pointer_t<uchardet_t>, Delete> detector{uchardet_new()};
    fn::String detected;
    std::int64_t totalScore = 0;  ///< Goes on growing when the detector has made up its mind.
};

CharsetDetector::CharsetDetector() : impl(std::make_unique<CharsetDetectorImpl>()) {}

CharsetDetector::~CharsetDetector() = default;

void CharsetDetector::pushData(const void* data, unsigned long size) {
    impl->pushData(static_cast<const char*>(data), static_cast<std::uint32_t>(size));
}

void CharsetDetector::done() {
    impl->done();
}

const fn::String& CharsetDetector::detectedCharset() const {
    return impl->charset();
}

fn::String CharsetDetector::detectFileCharset(const char* path, unsigned long maxBytes) {
    constexpr unsigned long noLimit = std::numeric_limits<unsigned long>::max();
    CharsetDetector detector;
    fn::FileInputStream stream(fn::FileDescriptor::read(path));
    char block[4096];
    unsigned long count = 0;
    do {
        count = stream.tryRead(block, sizeof block);
        if (count > 0) {
            detector.pushData(block, count);
        }
        if (maxBytes != noLimit) {
            maxBytes -= count < maxBytes ? count : maxBytes;
        }
    } while (maxBytes > 0 && count == sizeof block);
    detector.done();
    return detector.detectedCharset();
}

}  // namespace subtitles
