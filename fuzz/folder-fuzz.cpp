// SPDX-License-Identifier: LGPL-2.1-or-later
//
// A folder with one file in it, as a player comes to it: found, kept as JSON, and loaded by those
// who can. The input is the name of an encoding, a line feed, the file's name behind the film's, a
// line feed, and the file.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <list>
#include <string>
#include <vector>

#include <gst/gst.h>

#include "foundation/exception.h"
#include "foundation/path.h"
#include "foundation/string.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/subtitle-finder.h"
#include "subtitles/subtitle-loader.h"

#include "fuzz/fuzz-playable.h"
#include "fuzz/fuzz-require.h"
#include "tests/support/temporary-folder.h"

using subtitles::SubtitleData;
using subtitles::SubtitleFinder;
using subtitles::SubtitleLoader;
using subtitles::SubtitleReference;

namespace {

struct Input {
    fn::String encoding;
    std::string name;
    std::string bytes;
};

/// Up to the line feed, which goes as well.
std::string takeLine(std::string& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string line = text.substr(0, end);
    text.erase(0, end + 1);
    return line;
}

/// A name that a file can have.
std::string fileName(std::string name) {
    std::replace(name.begin(), name.end(), '/', '-');
    std::replace(name.begin(), name.end(), '\0', '-');
    return "film" + name.substr(0, 200);
}

Input inputOf(const std::uint8_t* data, std::size_t size) {
    std::string text(data, data + size);
    Input input;
    input.encoding = takeLine(text);
    input.name = fileName(takeLine(text));
    input.bytes = text;
    return input;
}

/// The one file of a folder, gone when the object is.
class File {
public:
    explicit File(const Input& input) : path(folder().writeFile(input.name, input.bytes)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { std::filesystem::remove(path); }

    /// Nothing that stands in a file keeps others in the folder from being found.
    std::vector<SubtitleReference> find() const {
        std::vector<SubtitleReference> found;
        SubtitleFinder::instance()->processFolder(fn::Path::parsePath(folder().path()), "film",
                                                  ".mkv", found);
        for (const SubtitleReference& reference : found) {
            FUZZ_REQUIRE(reference.type == SubtitleReference::FILE);
            FUZZ_REQUIRE(reference.path == path);
        }
        return found;
    }

private:
    static const test::TemporaryFolder& folder() {
        static const test::TemporaryFolder made;
        return made;
    }

    std::string path;
};

SubtitleReference keptAsJSON(const SubtitleReference& reference) {
    SubtitleReference read;
    FUZZ_REQUIRE(read.deserialize(reference.serialize()));
    FUZZ_REQUIRE(read.path == reference.path && read.mimeType == reference.mimeType);
    FUZZ_REQUIRE(read.loaderProperties == reference.loaderProperties);
    return read;
}

SubtitleLoader& loaderOf(const SubtitleReference& reference) {
    const std::list<SubtitleLoader*> loaders = SubtitleLoader::getAllLoaders();
    const auto able = [&](SubtitleLoader* loader) { return loader->canHandle(reference); };
    FUZZ_REQUIRE(std::count_if(loaders.begin(), loaders.end(), able) == 1);
    return **std::find_if(loaders.begin(), loaders.end(), able);
}

void requireReadable(const SubtitleData& data) {
    for (const auto& buffer : data.buffers) {
        subtitles::attributedTextFromBuffer(buffer.get());
    }
}

/// With an encoding that is detected, loading fails for malformed UTF-8 alone, and only where text
/// is refused; with one that is given, for a name that nobody knows as well.
void load(const SubtitleReference& reference, const fn::String& encoding) {
    try {
        const auto data = loaderOf(reference).loadSubtitle(reference, encoding);
        requirePlayable(*data);
        requireReadable(*data);
    } catch (const fn::UTF8Exception&) {
        FUZZ_REQUIRE(reference.mimeType == "application/x-ass" ||
                     reference.mimeType == "application/x-srt");
    } catch (const fn::RuntimeException&) {
        FUZZ_REQUIRE(!fn::String::isKnownEncoding(encoding));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Input input = inputOf(data, size);
    const File file(input);
    for (const SubtitleReference& found : file.find()) {
        const SubtitleReference reference = keptAsJSON(found);
        load(reference, "");
        load(reference, input.encoding);
    }
    return 0;
}
