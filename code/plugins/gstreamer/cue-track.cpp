// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/cue-track.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <foundation/byte-array.h>
#include <foundation/exception.h>
#include <foundation/file-stream.h>
#include <foundation/path.h>
#include <foundation/stream-reader.h>
#include <foundation/utf8.h>
#include <subtitles/ass-exporter.h>
#include <subtitles/ass-parser.h>
#include <subtitles/attributed-text-buffer.h>
#include <subtitles/charset-detector.h>
#include <subtitles/language.h>
#include <subtitles/subtitle-loader.h>

namespace subtitles::element {

namespace {

constexpr char assType[] = "application/x-ass";

/// How long a frame-counted cue without an end is shown, where nothing follows it sooner.
constexpr GstClockTime openCueTime = 5 * GST_SECOND;

/// The text of a buffer, without bytes 0: those end a text for some who read it.
fn::String textOf(_GstBuffer* buffer) {
    fn::String text(std::string(gst_buffer_get_size(buffer), '\0'));
    gst_buffer_extract(buffer, 0, text.data(), text.size());
    text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());
    return text;
}

bool isLanguage(const SubtitleReference& reference, const fn::String& wanted) {
    const fn::String lower = wanted.toLowerCase();
    const auto className = reference.loaderProperties.find("class");
    if (className != reference.loaderProperties.end() && className->second == lower) {
        return true;
    }
    return reference.languageCode.toLowerCase() == lower ||
           reference.languageName().toLowerCase() == lower ||
           (!reference.languageCode.empty() &&
            Language::forCode(reference.languageCode).matches(wanted));
}

/// The track of the file that the request asks for.
SubtitleReference chooseReference(const TrackRequest& request) {
    const fn::Path path = fn::Path::parsePath(request.location, fn::Path::Style{});
    std::vector<SubtitleReference> found;
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        for (SubtitleReference& reference : loader->analyzeFile(path)) {
            found.push_back(std::move(reference));
        }
    }
    if (found.empty()) {
        throw fn::RuntimeException("'" + request.location + "' holds no subtitles");
    }
    if (request.language.empty()) {
        return found.front();
    }
    const auto wanted = std::find_if(found.begin(), found.end(), [&](const auto& reference) {
        return isLanguage(reference, request.language);
    });
    if (wanted == found.end()) {
        throw fn::RuntimeException("'" + request.location +
                                   "' holds no subtitles in the language '" + request.language +
                                   "'");
    }
    return *wanted;
}

SubtitleReference referenceFor(const TrackRequest& request) {
    if (request.reference.empty()) {
        if (request.location.empty()) {
            throw fn::RuntimeException("No subtitle file was given");
        }
        return chooseReference(request);
    }
    SubtitleReference reference;
    if (!reference.deserialize(request.reference)) {
        throw fn::DataFormatException("The subtitle reference cannot be read");
    }
    return reference;
}

SubtitleLoader& loaderFor(const SubtitleReference& reference) {
    for (SubtitleLoader* const loader : SubtitleLoader::getAllLoaders()) {
        if (loader->canHandle(reference)) {
            return *loader;
        }
    }
    throw fn::RuntimeException("No reader takes subtitles of the type '" + reference.mimeType +
                               "'");
}

fn::AutoPtr<SubtitleData> loadWith(SubtitleLoader& loader, const SubtitleReference& reference,
                                   const fn::String& encoding) {
    try {
        return loader.loadSubtitle(reference, encoding);
    } catch (const fn::UTF8Exception&) {
        throw fn::UTF8Exception("'" + reference.path + "' is not valid UTF-8");
    }
}

/// What the library reads a text in that looks like no encoding.
fn::String fallbackEncoding(const fn::String& path) {
    constexpr unsigned long readLimit = 8388608;  // of the library, in bytes
    fn::FileInputStream file(fn::FileDescriptor::read(path));
    const fn::ByteArray bytes = fn::StreamReader(&file).readEverything(readLimit);
    fn::StringView text = bytes.view();
    if (text.size() == readLimit) {
        text.remove_suffix(fn::utf8::incompleteTail(text));
    }
    return fn::utf8::isValid(text) ? "UTF-8" : "windows-1252";
}

/// The encoding of the file, found once: it takes longer than all the rest.
fn::String detectEncoding(const fn::String& path) {
    const fn::String detected =
        CharsetDetector::detectFileCharset(path.c_str(), std::numeric_limits<unsigned long>::max());
    const bool isKnown = !detected.empty() && fn::String::isKnownEncoding(detected);
    return isKnown ? detected : fallbackEncoding(path);
}

/// From a buffer's time to nanoseconds. Each frame is scaled by itself, so that nothing adds up.
GstClockTime toNanoseconds(GstClockTime time, const SubtitleData& data,
                           const TrackRequest& request) {
    if (data.timestampUnit == SubtitleData::NANOSECONDS) {
        return time;
    }
    return gst_util_uint64_scale(time, GST_SECOND * static_cast<guint64>(request.fpsDenominator),
                                 static_cast<guint64>(request.fpsNumerator));
}

/// When a cue that begins and ends at these times is over; neither wraps around.
GstClockTime endOf(GstClockTime start, GstClockTime duration) {
    constexpr GstClockTime latest = std::numeric_limits<GstClockTime>::max() - 1;
    return duration > latest - start ? latest : start + duration;
}

/// Frame-counted cues without an end last up to the next one.
void closeOpenCues(std::vector<Span>& spans) {
    for (std::size_t i = 0; i < spans.size(); ++i) {
        if (spans[i].end == spans[i].start) {
            const GstClockTime latest = endOf(spans[i].start, openCueTime);
            const bool cut = i + 1 < spans.size() && spans[i + 1].start > spans[i].start;
            spans[i].end = cut ? std::min(latest, spans[i + 1].start) : latest;
        }
    }
}

}  // namespace

CueTrack CueTrack::load(const TrackRequest& request) {
    CueTrack track;
    const bool detect = request.encoding.empty() || request.encoding == "auto";
    track.chosen = referenceFor(request);
    SubtitleLoader& loader = loaderFor(track.chosen);
    track.usedEncoding = detect ? detectEncoding(track.chosen.path) : request.encoding;
    track.data = loadWith(loader, track.chosen, track.usedEncoding);
    const SubtitleData& loaded = *track.data;
    std::vector<Span> spans;
    for (const fn::AutoPtr<_GstBuffer>& buffer : loaded.buffers) {
        const GstClockTime start = GST_BUFFER_PTS(buffer.get());
        // A cue that has no time cannot be shown.
        if (start != GST_CLOCK_TIME_NONE) {
            const GstClockTime end = endOf(start, GST_BUFFER_DURATION(buffer.get()));
            spans.push_back(
                {toNanoseconds(start, loaded, request), toNanoseconds(end, loaded, request)});
            track.buffers.push_back(buffer.get());
        }
    }
    if (loaded.timestampUnit == SubtitleData::FRAMES) {
        closeOpenCues(spans);
    }
    track.cues = CueOrder(std::move(spans));
    return track;
}

bool CueTrack::isASS() const {
    return data->mimeType == assType;
}

AttributedText CueTrack::text(std::size_t index) const {
    AttributedText runs = isASS() ? ASSParser().parseEntry(textOf(buffers[index]))
                                  : attributedTextFromBuffer(buffers[index]);
    AttributedText shown;
    for (AttributedText::Run& run : runs) {
        run.text.erase(std::remove(run.text.begin(), run.text.end(), '\0'), run.text.end());
        if (!run.text.empty()) {
            shown.push_back(std::move(run));
        }
    }
    return shown;
}

fn::String CueTrack::event(std::size_t index) const {
    if (isASS()) {
        return textOf(buffers[index]);
    }
    return fn::String::number(static_cast<int>(index), 0, ' ') + ",0,Default,,0,0,0,," +
           ASSExporter().attributedTextToString(text(index));
}

fn::String CueTrack::scriptHead() const {
    if (isASS()) {
        return textOf(data->header.get());
    }
    const ASSStyle style;
    return "[Script Info]\nScriptType: v4.00+\n\n[V4+ Styles]\n" + style.getFormat() +
           style.getStyle("Default") + "\n";
}

}  // namespace subtitles::element
