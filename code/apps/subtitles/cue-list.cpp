// SPDX-License-Identifier: LGPL-2.1-or-later

#include "cue-list.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include <gst/gst.h>

#include "foundation/string.h"

#include "subtitles/ass-parser.h"
#include "subtitles/attributed-text-buffer.h"

#include "look.h"
#include "visible-text.h"

namespace tool {

using subtitles::AttributedText;
using subtitles::SubtitleData;

namespace {

std::uint64_t saturatedSum(std::uint64_t a, std::uint64_t b) {
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    return a > most - b ? most : a + b;
}

Cue makeCue(GstBuffer* buffer, SubtitleData::TimestampUnit unit) {
    Cue cue{GST_BUFFER_PTS(buffer), std::nullopt, buffer};
    const std::uint64_t duration = GST_BUFFER_DURATION(buffer);
    // A duration of no frames at all says that the end was left out.
    if (unit == SubtitleData::NANOSECONDS || duration != 0) {
        cue.end = saturatedSum(cue.start, duration);
    }
    return cue;
}

std::string payloadText(GstBuffer* buffer) {
    std::string text(gst_buffer_get_size(buffer), '\0');
    text.resize(gst_buffer_extract(buffer, 0, text.data(), text.size()));
    return text;
}

/// Line ends are CR LF, CR or LF here and LF alone there: a CR that stays would end a line in
/// WebVTT, and two of them the cue.
std::string cleanText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r') {
            i += text.substr(i, 2) == "\r\n" ? 1U : 0U;
            result.push_back('\n');
        } else if (text[i] != '\0') {
            result.push_back(text[i]);
        }
    }
    return validText(result);
}

std::string_view trimmedBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos
               ? std::string_view()
               : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// A number such as "25" or "23.976" and nothing else: no sign, no fraction, no unit.
bool isBareNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789.") == std::string_view::npos &&
           text.find('.') == text.rfind('.') && text.front() != '.' && text.back() != '.';
}

}  // namespace

CueList::CueList(fn::AutoPtr<SubtitleData> loaded, const std::optional<FrameRate>& givenRate)
    : data(std::move(loaded)),
      timeUnit(data->timestampUnit == SubtitleData::FRAMES ? TimeUnit::Frames
                                                           : TimeUnit::Nanoseconds) {
    entries.reserve(data->buffers.size());
    for (const fn::AutoPtr<GstBuffer>& buffer : data->buffers) {
        if (GST_BUFFER_PTS_IS_VALID(buffer.get())) {
            entries.push_back(makeCue(buffer.get(), data->timestampUnit));
        }
    }
    if (timeUnit == TimeUnit::Frames) {
        takeStatedRate(givenRate);
    }
}

// By habit the first entry of a MicroDVD file names the rate: {1}{1}23.976. It is no cue then, also
// where somebody knows the rate better. Cues of frame 0 have been sorted before it.
void CueList::takeStatedRate(const std::optional<FrameRate>& givenRate) {
    std::optional<FrameRate> rate = givenRate;
    const auto first = std::find_if(entries.begin(), entries.end(),
                                    [](const Cue& entry) { return entry.start > 0; });
    if (first != entries.end() && first->start == 1 && !first->end) {
        const std::string words = plainText(text(*first));
        if (const std::string_view number = trimmedBlanks(words); isBareNumber(number)) {
            const std::optional<FrameRate> stated = parseFrameRate(number);
            const bool isRate = stated && isPlausible(*stated);
            refused = isRate ? "" : number;
            rate = rate || !isRate ? rate : stated;
            entries.erase(first);
        }
    }
    if (rate) {
        convertFrames(*rate);
    }
}

void CueList::convertFrames(const FrameRate& rate) {
    for (Cue& cue : entries) {
        cue.start = frameTime(cue.start, rate);
        if (cue.end) {
            cue.end = frameTime(*cue.end, rate);
        }
    }
    timeUnit = TimeUnit::Nanoseconds;
    usedRate = rate;
}

AttributedText CueList::text(const Cue& cue) const {
    AttributedText text;
    if (data->mimeType == "application/x-ass") {
        text = subtitles::ASSParser().parseEntry(payloadText(cue.payload));
    } else {
        text = subtitles::attributedTextFromBuffer(cue.payload);
    }
    for (AttributedText::Run& run : text) {
        run.text = cleanText(run.text);
    }
    return text;
}

}  // namespace tool
