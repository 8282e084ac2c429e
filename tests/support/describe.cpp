// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/support/describe.h"

#include <cstdint>
#include <type_traits>

#include <fmt/format.h>
#include <gst/gst.h>

#include "foundation/utf8.h"

#include "subtitles/attributed-text-buffer.h"
#include "subtitles/text-attributes-fields.h"

namespace subtitles {
namespace {

// In the order of the mask's bits.
constexpr const char* names[] = {
    "description", "family",         "size",    "points",  "style",
    "weight",      "variant",        "stretch", "color",   "background",
    "underline",   "underlineColor", "rise",    "strike",  "strikeColor",
    "fallback",    "language",       "spacing", "gravity", "gravityHint",
};

std::string valueText(const fn::String& value) {
    return "'" + escaped(fn::to_string_view(value)) + "'";
}
std::string valueText(const Color& value) {
    return describe(value);
}
template <class Number>
std::string valueText(Number value) {
    return std::to_string(static_cast<std::int32_t>(value));
}

std::string describeMasked(const TextAttributes& attributes, std::uint32_t mask) {
    std::string result;
    const char* const* name = names;
    forEachAttribute([&](TextAttributes::Attribute bit, const char*, auto field) {
        if ((mask & bit) != 0) {
            result += fmt::format("{}{}={}", result.empty() ? "" : " ", *name,
                                  valueText(attributes.*field));
        }
        ++name;
    });
    return result;
}

std::string time(GstClockTime time) {
    return time == GST_CLOCK_TIME_NONE ? "-" : std::to_string(time);
}

std::string bytesOf(_GstBuffer* buffer) {
    std::string bytes(gst_buffer_get_size(buffer), '\0');
    gst_buffer_extract(buffer, 0, bytes.data(), bytes.size());
    return bytes;
}

std::string payload(_GstBuffer* buffer, fn::StringView mimeType) {
    if (mimeType == "application/x-attributed-text") {
        return describe(attributedTextFromBuffer(buffer));
    }
    return "\"" + escaped(bytesOf(buffer)) + "\"";
}

std::string times(const fn::AutoPtr<_GstBuffer>& buffer) {
    return time(GST_BUFFER_PTS(buffer.get())) + "+" + time(GST_BUFFER_DURATION(buffer.get()));
}

std::string escapedByte(unsigned char byte) {
    switch (byte) {
        case '\0': return "\\0";
        case '\n': return "\\n";
        case '\r': return "\\r";
        case '\t': return "\\t";
        case '\\': return "\\\\";
        default: return fmt::format("\\x{:02X}", byte);
    }
}

}  // namespace

std::string escaped(fn::StringView bytes) {
    std::string result;
    const char* const end = bytes.data() + bytes.size();
    for (const char* at = bytes.data(); at != end;) {
        const fn::utf8::Sequence sequence = fn::utf8::decode(at, end);
        const bool plain = sequence.size != 0 && sequence.codePoint >= 0x20 &&
                           sequence.codePoint != 0x7F && *at != '\\';
        if (plain) {
            result.append(at, sequence.size);
            at += sequence.size;
        } else {
            result += escapedByte(static_cast<unsigned char>(*at));
            ++at;
        }
    }
    return result;
}

std::string describe(const Color& color) {
    return fmt::format("{:02x}{:02x}{:02x}", color.red, color.green, color.blue);
}

std::string describe(const TextAttributes& attributes) {
    std::string result = describeMasked(attributes, attributes.attributeMask);
    const std::uint32_t unknown = attributes.attributeMask & ~allAttributes;
    if (unknown != 0) {
        result += fmt::format("{}unknown={:x}", result.empty() ? "" : " ", unknown);
    }
    return result;
}

std::string describeFields(const TextAttributes& attributes) {
    return fmt::format("{} mask={:x}", describeMasked(attributes, allAttributes),
                       attributes.attributeMask);
}

std::string describe(const AttributedText& text) {
    std::string result;
    for (const AttributedText::Run& run : text) {
        const std::string attributes = describe(run.attributes);
        result += "[" + attributes + (attributes.empty() ? "" : ": ") +
                  escaped(fn::to_string_view(run.text)) + "]";
    }
    return result;
}

std::string describe(const TextAttributesDelta& delta) {
    return "changed(" + describe(delta.changed) + ") removed(" + describe(delta.removed) + ")";
}

std::string describe(const fn::AutoPtr<_GstBuffer>& buffer, fn::StringView mimeType) {
    if (!buffer) {
        return "null";
    }
    return times(buffer) + " " + payload(buffer.get(), mimeType);
}

std::string describe(const SubtitleData& data) {
    std::string result = data.mimeType;
    result += data.timestampUnit == SubtitleData::FRAMES ? " frames" : " ns";
    if (data.header) {
        result += " | header \"" + escaped(bytesOf(data.header.get())) + "\"";
    }
    for (const fn::AutoPtr<_GstBuffer>& buffer : data.buffers) {
        result += " | " + describe(buffer, fn::to_string_view(data.mimeType));
    }
    return result;
}

std::string describeTimes(const SubtitleData& data) {
    std::string result;
    for (const fn::AutoPtr<_GstBuffer>& buffer : data.buffers) {
        result += (result.empty() ? "" : " ") + times(buffer);
    }
    return result;
}

}  // namespace subtitles
