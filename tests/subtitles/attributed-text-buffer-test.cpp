// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/attributed-text-buffer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gst/gst.h>
#include <gtest/gtest.h>

#include "tests/support/describe.h"

namespace subtitles {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes bytesOf(const fn::AutoPtr<_GstBuffer>& buffer) {
    Bytes bytes(gst_buffer_get_size(buffer.get()));
    gst_buffer_extract(buffer.get(), 0, bytes.data(), bytes.size());
    return bytes;
}

// The bytes in memory of exactly their size, so that a sanitizer sees any read behind them.
fn::AutoPtr<_GstBuffer> bufferOf(const Bytes& bytes) {
    if (bytes.empty()) {
        return fn::AutoPtr<_GstBuffer>(gst_buffer_new());
    }
    auto* const copy = static_cast<std::uint8_t*>(g_malloc(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), copy);
    return fn::AutoPtr<_GstBuffer>(gst_buffer_new_wrapped(copy, bytes.size()));
}

AttributedText read(const Bytes& bytes) {
    return attributedTextFromBuffer(bufferOf(bytes).get());
}

// Every field has a value of its own, and none is the default.
AttributedText::Run everyField(std::uint32_t mask) {
    AttributedText::Run run;
    TextAttributes& a = run.attributes;
    a.fontDescription = "D";
    a.fontFamily = "fam";
    a.fontSizeRelative = -3;
    a.fontSizeAbsolute = 0x01020304;
    a.fontStyle = TextAttributes::FONT_STYLE_ITALIC;
    a.fontWeight = TextAttributes::FONT_WEIGHT_BOLD;
    a.fontVariant = TextAttributes::FONT_VARIANT_SMALL_CAPS;
    a.fontStretch = TextAttributes::FONT_STRETCH_ULTRA_CONDENSED;
    a.foregroundColor = {0x11, 0x12, 0x13};
    a.backgroundColor = {0x21, 0x22, 0x23};
    a.underline = TextAttributes::UNDERLINE_LOW;
    a.underlineColor = {0x31, 0x32, 0x33};
    a.rise = -2;
    a.strikeThrough = true;
    a.strikeThroughColor = {0x41, 0x42, 0x43};
    a.fallback = false;
    a.language = "ko";
    a.letterSpacing = 0x7FFFFFFF;
    a.gravity = TextAttributes::GRAVITY_WEST;
    a.gravityHint = TextAttributes::GRAVITY_HINT_LINE;
    a.attributeMask = mask;
    run.text = fn::String("hi\0", 3);
    return run;
}

// clang-format off
const Bytes everyFieldBytes = {
    0x78, 0x56, 0x04, 0x00,                    // mask
    0x01, 0x00, 0x00, 0x00, 'D',               // font description
    0x03, 0x00, 0x00, 0x00, 'f', 'a', 'm',     // font family
    0xFD, 0xFF, 0xFF, 0xFF,                    // relative size
    0x04, 0x03, 0x02, 0x01,                    // absolute size
    0x02, 0x00, 0x00, 0x00,                    // style
    0xBC, 0x02, 0x00, 0x00,                    // weight
    0x01, 0x00, 0x00, 0x00,                    // variant
    0xFC, 0xFF, 0xFF, 0xFF,                    // stretch
    0x11, 0x12, 0x13,                          // foreground
    0x21, 0x22, 0x23,                          // background
    0x03, 0x00, 0x00, 0x00,                    // underline
    0x31, 0x32, 0x33,                          // underline's colour
    0xFE, 0xFF, 0xFF, 0xFF,                    // rise
    0x01,                                      // strike-through
    0x41, 0x42, 0x43,                          // strike-through's colour
    0x00,                                      // fallback
    0x02, 0x00, 0x00, 0x00, 'k', 'o',          // language
    0xFF, 0xFF, 0xFF, 0x7F,                    // letter spacing
    0x04, 0x00, 0x00, 0x00,                    // gravity
    0x02, 0x00, 0x00, 0x00,                    // gravity hint
    0x03, 0x00, 0x00, 0x00, 'h', 'i', 0x00,    // text
};

// Where things lie in a default run, from its mask on.
constexpr std::size_t strikeThroughAt = 53;
constexpr std::size_t fallbackAt = 57;
constexpr std::size_t textLengthAt = 74;

// The default run, without its text: 78 bytes.
const Bytes defaultRunBytes = {
    0, 0, 0, 0,             // mask
    0, 0, 0, 0,             // font description
    0, 0, 0, 0,             // font family
    0, 0, 0, 0,             // relative size
    0, 0, 0, 0,             // absolute size
    0, 0, 0, 0,             // style
    0x90, 0x01, 0, 0,       // weight: 400
    0, 0, 0, 0,             // variant
    0, 0, 0, 0,             // stretch
    0, 0, 0, 0, 0, 0,       // foreground, background
    0, 0, 0, 0,             // underline
    0, 0, 0,                // underline's colour
    0, 0, 0, 0,             // rise
    0, 0, 0, 0, 1,          // strike-through, its colour, fallback
    0, 0, 0, 0,             // language
    0, 0, 0, 0,             // letter spacing
    0, 0, 0, 0,             // gravity
    0, 0, 0, 0,             // gravity hint
    0, 0, 0, 0,             // text
};
// clang-format on

Bytes withCount(std::uint32_t count, const Bytes& rest) {
    Bytes bytes;
    for (unsigned int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<std::uint8_t>(count >> shift));
    }
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

AttributedText textOf(const std::vector<AttributedText::Run>& runs) {
    AttributedText text;
    for (const AttributedText::Run& run : runs) {
        text.push_back(run);
    }
    return text;
}

TEST(AttributedTextToBuffer, NoRunsAreFourZeroBytes) {
    EXPECT_EQ(bytesOf(attributedTextToBuffer({})), Bytes({0, 0, 0, 0}));
}

TEST(AttributedTextToBuffer, DefaultRunTakes78Bytes) {
    ASSERT_EQ(defaultRunBytes.size(), 78U);
    EXPECT_EQ(bytesOf(attributedTextToBuffer(plainToAttributedText(""))),
              withCount(1, defaultRunBytes));
}

TEST(AttributedTextToBuffer, EveryFieldHasItsPlaceAndWidth) {
    EXPECT_EQ(bytesOf(attributedTextToBuffer(textOf({everyField(0x45678)}))),
              withCount(1, everyFieldBytes));
}

TEST(AttributedTextToBuffer, RunsLieBackToBack) {
    const AttributedText text = textOf({everyField(0x45678), {}, everyField(0x45678)});
    EXPECT_EQ(bytesOf(attributedTextToBuffer(text)),
              withCount(3, everyFieldBytes + defaultRunBytes + everyFieldBytes));
}

TEST(AttributedTextToBuffer, WritesTheMaskAsItIs) {
    const Bytes bytes = bytesOf(attributedTextToBuffer(textOf({everyField(0xFEDCBA98)})));
    EXPECT_EQ(Bytes(bytes.begin() + 4, bytes.begin() + 8), Bytes({0x98, 0xBA, 0xDC, 0xFE}));
}

TEST(AttributedTextToBuffer, LongStringsHaveLongLengths) {
    const fn::String text(std::string(0x12345, 'x'));
    const Bytes bytes = bytesOf(attributedTextToBuffer(plainToAttributedText(text)));
    ASSERT_EQ(bytes.size(), 4 + 78 + text.size());
    EXPECT_EQ(Bytes(bytes.begin() + 4 + textLengthAt, bytes.begin() + 4 + 78),
              Bytes({0x45, 0x23, 0x01, 0x00}));
}

TEST(AttributedTextToBuffer, BufferHasNoTimesAndOneOwner) {
    const fn::AutoPtr<_GstBuffer> buffer = attributedTextToBuffer(plainToAttributedText("a"));
    EXPECT_EQ(buffer->pts, GST_CLOCK_TIME_NONE);
    EXPECT_EQ(buffer->dts, GST_CLOCK_TIME_NONE);
    EXPECT_EQ(buffer->duration, GST_CLOCK_TIME_NONE);
    EXPECT_EQ(GST_MINI_OBJECT_REFCOUNT_VALUE(buffer.get()), 1);
    EXPECT_TRUE(gst_buffer_is_writable(buffer.get()));
}

TEST(AttributedTextFromBuffer, ReadsWhatWasWritten) {
    const AttributedText text = textOf({everyField(0xFFFFF), everyField(0x20), {}});
    const AttributedText back = attributedTextFromBuffer(attributedTextToBuffer(text).get());
    EXPECT_EQ(describe(back), describe(text));
}

TEST(AttributedTextFromBuffer, FieldsThatAreNotSetComeThrough) {
    const AttributedText back =
        attributedTextFromBuffer(attributedTextToBuffer(textOf({everyField(0)})).get());
    ASSERT_EQ(back.size(), 1U);
    EXPECT_EQ(describeFields(back[0].attributes), describeFields(everyField(0).attributes));
    EXPECT_EQ(describe(back), "[hi\\0]");
}

TEST(AttributedTextFromBuffer, EmptyListReadsBackAsOne) {
    EXPECT_TRUE(attributedTextFromBuffer(attributedTextToBuffer({}).get()).empty());
}

TEST(AttributedTextFromBuffer, EmptyAndMissingBuffersHoldNothing) {
    EXPECT_TRUE(read({}).empty());
    EXPECT_TRUE(attributedTextFromBuffer(nullptr).empty());
}

TEST(AttributedTextFromBuffer, CountThatIsNotPositiveMeansNothing) {
    EXPECT_TRUE(read(withCount(0, defaultRunBytes)).empty());
    EXPECT_TRUE(read(withCount(0x80000000, defaultRunBytes)).empty());
    EXPECT_TRUE(read(withCount(0xFFFFFFFF, defaultRunBytes)).empty());
}

TEST(AttributedTextFromBuffer, KeepsTheTwentyBitsOfTheMask) {
    Bytes bytes = withCount(1, defaultRunBytes);
    std::fill_n(bytes.begin() + 4, 4, std::uint8_t{0xFF});
    const AttributedText text = read(bytes);
    ASSERT_EQ(text.size(), 1U);
    EXPECT_EQ(text[0].attributes.attributeMask, 0xFFFFFU);
}

TEST(AttributedTextFromBuffer, EveryBitOfTheMaskComesThroughAlone) {
    for (unsigned int bit = 0; bit < 32; ++bit) {
        AttributedText::Run run;
        run.attributes.attributeMask = 1U << bit;
        const AttributedText back =
            attributedTextFromBuffer(attributedTextToBuffer(textOf({run})).get());
        EXPECT_EQ(back[0].attributes.attributeMask, bit < 20 ? 1U << bit : 0U) << bit;
    }
}

TEST(AttributedTextFromBuffer, AnyByteButZeroIsTrue) {
    for (const int byte : {1, 2, 0x80, 0xFF}) {
        Bytes bytes = withCount(1, defaultRunBytes);
        bytes[4 + strikeThroughAt] = static_cast<std::uint8_t>(byte);
        bytes[4 + fallbackAt] = static_cast<std::uint8_t>(byte);
        const AttributedText text = read(bytes);
        ASSERT_EQ(text.size(), 1U);
        // Once more through the writer, which puts nothing but 0 and 1.
        const Bytes back = bytesOf(attributedTextToBuffer(text));
        EXPECT_EQ(back[4 + strikeThroughAt], 1) << byte;
        EXPECT_EQ(back[4 + fallbackAt], 1) << byte;
    }
}

TEST(AttributedTextFromBuffer, BytesBehindTheLastRunAreIgnored) {
    EXPECT_EQ(describe(read(withCount(1, everyFieldBytes + everyFieldBytes))),
              describe(read(withCount(1, everyFieldBytes))));
    EXPECT_EQ(read(withCount(1, everyFieldBytes + Bytes{0xFF})).size(), 1U);
}

TEST(AttributedTextFromBuffer, ValuesOutsideTheVocabularyComeThrough) {
    AttributedText::Run run;
    run.attributes.fontWeight = static_cast<TextAttributes::FontWeight>(-1);
    run.attributes.gravity = static_cast<TextAttributes::Gravity>(0x12345678);
    const AttributedText back =
        attributedTextFromBuffer(attributedTextToBuffer(textOf({run})).get());
    EXPECT_EQ(back[0].attributes.fontWeight, -1);
    EXPECT_EQ(back[0].attributes.gravity, 0x12345678);
}

// Runs stand where the buffer holds them whole, wherever it is cut.
TEST(AttributedTextFromBuffer, CutAtEveryByteGivesTheWholeRuns) {
    const Bytes whole = withCount(2, everyFieldBytes + defaultRunBytes);
    const std::size_t firstEnd = 4 + everyFieldBytes.size();
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const std::size_t expected = size == whole.size() ? 2 : size >= firstEnd ? 1 : 0;
        const AttributedText text = read(Bytes(whole.begin(), whole.begin() + long(size)));
        ASSERT_EQ(text.size(), expected) << "cut behind " << size << " bytes";
        if (expected > 0) {
            EXPECT_EQ(describeFields(text[0].attributes),
                      describeFields(everyField(0x45678).attributes));
        }
    }
}

TEST(AttributedTextFromBuffer, HugeCountCostsNothing) {
    EXPECT_TRUE(read(withCount(2147483647, {})).empty());
    EXPECT_EQ(describe(read(withCount(2147483647, everyFieldBytes + everyFieldBytes))),
              describe(textOf({everyField(0x45678), everyField(0x45678)})));
}

// The lengths of the four strings, at their places in a default run.
TEST(AttributedTextFromBuffer, LengthBeyondTheBufferDropsTheRun) {
    for (const std::size_t lengthAt :
         {std::size_t{4}, std::size_t{8}, std::size_t{58}, textLengthAt}) {
        for (const int byte : {0xFF, 0x7F, 0x01}) {
            Bytes bytes = withCount(2, everyFieldBytes + defaultRunBytes);
            const auto length = bytes.begin() + long(4 + everyFieldBytes.size() + lengthAt);
            std::fill_n(length, 4, static_cast<std::uint8_t>(byte));
            EXPECT_EQ(describe(read(bytes)), describe(textOf({everyField(0x45678)})))
                << lengthAt << " " << byte;
        }
    }
}

TEST(AttributedTextFromBuffer, LengthOneBeyondTheEndDropsTheRun) {
    Bytes bytes = withCount(1, defaultRunBytes);
    bytes[4 + textLengthAt] = 1;
    EXPECT_TRUE(read(bytes).empty());
    bytes.push_back('x');
    EXPECT_EQ(describe(read(bytes)), "[x]");
}

TEST(AttributedTextFromBuffer, BufferOfSeveralMemoriesIsOneText) {
    const Bytes bytes = withCount(1, everyFieldBytes);
    const fn::AutoPtr<_GstBuffer> buffer = bufferOf(Bytes(bytes.begin(), bytes.begin() + 30));
    gst_buffer_append(buffer.get(), bufferOf(Bytes(bytes.begin() + 30, bytes.end())).release());
    EXPECT_EQ(describe(attributedTextFromBuffer(buffer.get())),
              describe(textOf({everyField(0x45678)})));
}

TEST(AttributedTextFromBuffer, LeavesTheBufferUnmapped) {
    const fn::AutoPtr<_GstBuffer> buffer = attributedTextToBuffer(plainToAttributedText("a"));
    attributedTextFromBuffer(buffer.get());
    // A mapped memory is locked against writers.
    GstMapInfo info;
    ASSERT_TRUE(gst_buffer_map(buffer.get(), &info, GST_MAP_WRITE));
    gst_buffer_unmap(buffer.get(), &info);
}

TEST(AttributedTextFromBuffer, ManyRunsComeThrough) {
    AttributedText text;
    for (int i = 0; i < 100000; ++i) {
        text.push_back({TextAttributes(), fn::String::number(i)});
    }
    const AttributedText back = attributedTextFromBuffer(attributedTextToBuffer(text).get());
    ASSERT_EQ(back.size(), 100000U);
    EXPECT_EQ(back[99999].text, "99999");
}

}  // namespace
}  // namespace subtitles
