// SPDX-License-Identifier: LGPL-2.1-or-later

#include <utility>

#include <gst/gst.h>

#include "foundation/auto-ptr.h"
#include "foundation/byte-array.h"
#include "foundation/string.h"

#include "subtitles/ass-reader.h"
#include "subtitles/charset-detector.h"
#include "subtitles/load-string.h"
#include "subtitles/microdvd-parser.h"
#include "subtitles/smi-loader.h"
#include "subtitles/srt-reader.h"
#include "subtitles/subtitle-data.h"

#include "benchmarks/peers/reader.h"

namespace peers {
namespace {

using Data = fn::AutoPtr<subtitles::SubtitleData>;

Data loadSMI(const fn::String& text, bool withStyleSheets) {
    subtitles::SMILoader loader;
    loader.parseStyleSheets = withStyleSheets;
    return loader.loadText(text);
}

Data sanitized(Data data) {
    data->sanitize();
    return data;
}

Data load(Format format, fn::String text, bool withStyleSheets) {
    switch (format) {
        case Format::SRT: return sanitized(subtitles::parseSRT(text));
        case Format::MicroDVD: return sanitized(subtitles::parseMicroDVD(std::move(text), -1));
        case Format::ASS: return sanitized(subtitles::parseASS(text));
        case Format::SMI: return loadSMI(text, withStyleSheets);
    }
    return Data();
}

class SubtitlesReader : public Reader {
public:
    SubtitlesReader(Format fileFormat, const std::string& fileEncoding, bool withStyleSheets)
        : format(fileFormat), encoding(fileEncoding), styleSheets(withStyleSheets) {}

    void prepare(const std::string& file) override {
        bytes.clear();
        bytes.append(file.data(), file.size());
    }

    std::size_t read(const std::string& /*file*/) override {
        data =
            load(format, subtitles::decodeText(bytes, encoding, subtitles::loadLimit), styleSheets);
        return data->buffers.size();
    }

    void release() override { data.reset(); }

private:
    Format format;
    fn::String encoding;
    bool styleSheets;
    fn::ByteArray bytes;
    Data data;
};

class DetectorReader : public Reader {
public:
    std::size_t read(const std::string& file) override {
        subtitles::CharsetDetector detector;
        detector.pushData(file.data(), file.size());
        detector.done();
        return detector.detectedCharset().empty() ? 0 : 1;
    }

    void release() override {}
};

}  // namespace

std::unique_ptr<Reader> makeSubtitles(Format format, const std::string& encoding,
                                      bool withStyleSheets) {
    return std::make_unique<SubtitlesReader>(format, encoding, withStyleSheets);
}

std::unique_ptr<Reader> makeDetector() {
    return std::make_unique<DetectorReader>();
}

}  // namespace peers
