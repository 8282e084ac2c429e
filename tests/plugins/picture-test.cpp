// SPDX-License-Identifier: LGPL-2.1-or-later
//
// What the viewer sees: the element in real pipelines, judged by the pixels that come out. The
// pictures are kept in the build's folder, to be looked at.

#include "picture.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "frame-grabber.h"
#include "overlay-input.h"
#include "pipeline.h"
#include "plugins/gstreamer/subtitles-src.h"
#include "subtitle-file.h"
#include "tests/support/temporary-folder.h"

namespace {

using tool::Picture;

using Pixel = std::array<int, 3>;

Pixel pixelAt(const Picture& picture, int x, int y) {
    const std::size_t at =
        static_cast<std::size_t>(y) * tool::stride(picture.width) + static_cast<std::size_t>(x) * 3;
    const auto channel = [&](std::size_t i) {
        return static_cast<int>(static_cast<unsigned char>(picture.pixels[at + i]));
    };
    return {channel(0), channel(1), channel(2)};
}

bool isWhite(const Pixel& pixel) {
    return *std::min_element(pixel.begin(), pixel.end()) > 200;
}

bool isRed(const Pixel& pixel) {
    return pixel[0] > 200 && pixel[1] < 30 && pixel[2] < 30;
}

/// How many pixels of the rows from `top` up to `bottom` are so.
int count(const Picture& picture, const std::function<bool(const Pixel&)>& isSo, int top,
          int bottom) {
    int found = 0;
    for (int y = top; y < bottom; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            found += isSo(pixelAt(picture, x, y)) ? 1 : 0;
        }
    }
    return found;
}

int count(const Picture& picture, const std::function<bool(const Pixel&)>& isSo) {
    return count(picture, isSo, 0, picture.height);
}

/// How many pixels are white in one picture alone.
int difference(const Picture& a, const Picture& b) {
    int found = 0;
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            found += isWhite(pixelAt(a, x, y)) != isWhite(pixelAt(b, x, y)) ? 1 : 0;
        }
    }
    return found;
}

void keep(const std::string& name, const Picture& picture) {
    std::filesystem::create_directories(TEST_PICTURES);
    std::ofstream(TEST_PICTURES "/" + name + ".png", std::ios::binary) << tool::encodePNG(picture);
}

class Pictures : public testing::Test {
protected:
    static void SetUpTestSuite() {
        gst_element_register(nullptr, "subtitlesrc", GST_RANK_NONE, SUBTITLES_TYPE_SRC);
    }

    static bool hasElement(const char* name) {
        GstElementFactory* const factory = gst_element_factory_find(name);
        if (factory == nullptr) {
            return false;
        }
        gst_object_unref(factory);
        return true;
    }

    void SetUp() override {
        for (const char* const name : {"videotestsrc", "textoverlay", "pngenc"}) {
            if (!hasElement(name)) {
                GTEST_SKIP() << "GStreamer has no " << name;
            }
        }
    }

    tool::LoadedTrack load(const std::string& name, const std::string& text) {
        const auto tracks = tool::tracksInFile(folder.writeFile(name, text));
        return tool::loadTrack(tracks.front(), "", std::nullopt);
    }

    Picture frame(const tool::LoadedTrack& track, GstClockTime milliseconds) {
        tool::FrameGrabber grabber(track, {});
        return grabber.frameAt(milliseconds * GST_MSECOND);
    }

    /// The same text where no font has its letters: the boxes that a viewer must not see.
    static Picture boxes(const std::string& text, const std::string& family) {
        tool::Pipeline pipeline(
            "videotestsrc pattern=solid-color foreground-color=0xff404040 num-buffers=1 ! "
            "video/x-raw,format=RGB,width=1280,height=720,framerate=25/1 ! "
            "textoverlay name=overlay font-desc=\"Sans 18\" ! video/x-raw,format=RGB ! "
            "fakesink name=sink");
        const std::string markup =
            "<span fallback=\"false\" face=\"" + family + "\">" + text + "</span>";
        pipeline.set("overlay", "text", markup.c_str());
        pipeline.pause();
        const tool::SamplePtr sample = pipeline.lastSample("sink");
        Picture picture = tool::plainPicture(1280, 720, 0);
        gst_buffer_extract(gst_sample_get_buffer(sample.get()), 0, picture.pixels.data(),
                           picture.pixels.size());
        return picture;
    }

    test::TemporaryFolder folder;
};

TEST_F(Pictures, CueIsOnTheFrameInItsTimeAndNotOutside) {
    const auto track = load("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");
    tool::FrameGrabber grabber(track, {});
    struct {
        GstClockTime time;
        bool isShown;
    } const moments[] = {{0, false},   {960, false}, {1000, true},  {1500, true},
                         {1980, true}, {1999, true}, {2000, false}, {5000, false}};
    for (const auto& moment : moments) {
        const Picture picture = grabber.frameAt(moment.time * GST_MSECOND);
        EXPECT_EQ(count(picture, isWhite) > 300, moment.isShown) << moment.time;
        EXPECT_EQ(count(picture, isWhite) > 0, moment.isShown) << moment.time;
        keep("time-" + std::to_string(moment.time), picture);
    }
}

TEST_F(Pictures, CueIsOnTheFilmInItsTimeAndNotOutside) {
    const std::string film = folder.path("film.ogv");
    tool::Pipeline maker(
        "videotestsrc pattern=black num-buffers=40 ! "
        "video/x-raw,width=640,height=360,framerate=10/1 ! theoraenc ! oggmux ! "
        "filesink location=\"" +
        film + "\"");
    maker.run();
    const auto track = load("film.srt", "1\n00:00:01,000 --> 00:00:02,000\nHello\n");
    tool::FrameGrabber::Options options;
    options.film = film;
    tool::FrameGrabber grabber(track, options);
    for (const GstClockTime time : {3000U, 1500U, 500U, 1999U, 2000U, 1000U, 999U}) {
        const Picture picture = grabber.frameAt(time * GST_MSECOND);
        EXPECT_EQ(count(picture, isWhite) > 100, 1000 <= time && time < 2000) << time;
        keep("film-" + std::to_string(time), picture);
    }
}

TEST_F(Pictures, RedTextIsRed) {
    const auto track = load("a.srt",
                            "1\n00:00:01,000 --> 00:00:02,000\n<font color=\"red\">Red</font>\n\n"
                            "2\n00:00:03,000 --> 00:00:04,000\nWhite\n");
    const Picture red = frame(track, 1500);
    const Picture white = frame(track, 3500);
    keep("red", red);
    EXPECT_GT(count(red, isRed), 100);
    EXPECT_EQ(count(red, isWhite), 0);
    EXPECT_EQ(count(white, isRed), 0);
    EXPECT_GT(count(white, isWhite), 100);
}

TEST_F(Pictures, BoldTextHasMoreInk) {
    const auto track = load("a.srt",
                            "1\n00:00:01,000 --> 00:00:02,000\n<b>Mountain</b>\n\n"
                            "2\n00:00:03,000 --> 00:00:04,000\nMountain\n");
    EXPECT_GT(count(frame(track, 1500), isWhite), count(frame(track, 3500), isWhite) * 11 / 10);
}

TEST_F(Pictures, MarkupCharactersAreLetters) {
    const auto track = load("a.srt", "1\n00:00:01,000 --> 00:00:02,000\nTom & Jerry > 1\n");
    EXPECT_GT(count(frame(track, 1500), isWhite), 300);
}

// "Fog in the morning", in Hangul.
constexpr const char* korean =
    "\xEC\x95\x84\xEC\xB9\xA8 \xEC\x95\x88\xEA\xB0\x9C\xEA\xB0\x80 "
    "\xEC\xA7\x99\xEC\x8A\xB5\xEB\x8B\x88\xEB\x8B\xA4";
// The same, in Arabic.
constexpr const char* arabic =
    "\xD8\xA7\xD9\x84\xD8\xB6\xD8\xA8\xD8\xA7\xD8\xA8 "
    "\xD9\x83\xD8\xAB\xD9\x8A\xD9\x81 \xD8\xA7\xD9\x84\xD8\xB5\xD8\xA8\xD8\xA7\xD8\xAD";

TEST_F(Pictures, KoreanOfAnSMIFileHasGlyphs) {
    const auto track = load("a.smi", std::string("<SAMI><BODY><SYNC Start=1000><P>") + korean +
                                         "<SYNC Start=3000><P>&nbsp;</BODY></SAMI>");
    const Picture shown = frame(track, 1500);
    const Picture missing = boxes(korean, "DejaVu Sans");
    keep("korean", shown);
    keep("korean-boxes", missing);
    EXPECT_GT(count(shown, isWhite), 1000);
    EXPECT_GT(difference(shown, missing), 1000);
}

TEST_F(Pictures, ArabicOfAnSRTFileHasGlyphs) {
    const auto track =
        load("a.srt", std::string("1\n00:00:01,000 --> 00:00:02,000\n") + arabic + "\n");
    const Picture shown = frame(track, 1500);
    const Picture missing = boxes(arabic, "NanumGothic");
    keep("arabic", shown);
    keep("arabic-boxes", missing);
    EXPECT_GT(count(shown, isWhite), 1000);
    EXPECT_GT(difference(shown, missing), 1000);
}

// What the two tests above take for glyphs is none where there are none.
TEST_F(Pictures, LetterWithoutAGlyphIsABox) {
    constexpr const char* nobodys = "\xF4\x8F\xBF\xBD\xF4\x8F\xBF\xBD\xF4\x8F\xBF\xBD";
    const auto track =
        load("a.srt", std::string("1\n00:00:01,000 --> 00:00:02,000\n") + nobodys + "\n");
    const Picture shown = frame(track, 1500);
    keep("boxes", shown);
    EXPECT_GT(count(shown, isWhite), 100);
    EXPECT_LT(difference(shown, boxes(nobodys, "DejaVu Sans")), 1000);
}

TEST_F(Pictures, ScriptPlacesItsText) {
    if (!hasElement("assrender")) {
        GTEST_SKIP() << "GStreamer has no assrender";
    }
    const auto track =
        load("a.ass",
             "[Script Info]\nScriptType: v4.00+\nPlayResX: 1280\nPlayResY: 720\n\n[V4+ Styles]\n"
             "Format: Name, Fontname, Fontsize, PrimaryColour, Alignment\n"
             "Style: Default,Sans,60,&H00FFFFFF,8\n\n[Events]\n"
             "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
             "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,Above\n");
    const Picture picture = frame(track, 1500);
    keep("script", picture);
    EXPECT_GT(count(picture, isWhite, 0, 360), 300);
    EXPECT_EQ(count(picture, isWhite, 360, 720), 0);
    EXPECT_EQ(count(frame(track, 2500), isWhite), 0);
}

// A film with thousands of cues, and a viewer who looks for one scene after another.

constexpr unsigned cueTotal = 5000;
constexpr GstClockTime cueDistance = 2000;  // milliseconds
constexpr GstClockTime cueLength = 1500;

/// A colour of its own for each cue, far enough from those of its neighbours.
Pixel colorOf(unsigned cue) {
    const auto channel = [](unsigned digit) { return static_cast<int>(40 + 12 * (digit % 18)); };
    return {channel(cue), channel(cue / 18), channel(cue / 18 / 18)};
}

std::string timeText(GstClockTime milliseconds) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%02u:%02u:%02u,%03u",
                  static_cast<unsigned>(milliseconds / 3600000),
                  static_cast<unsigned>(milliseconds / 60000 % 60),
                  static_cast<unsigned>(milliseconds / 1000 % 60),
                  static_cast<unsigned>(milliseconds % 1000));
    return text.data();
}

/// Cues that are blocks of their colours.
std::string manyCues() {
    std::string text;
    for (unsigned i = 0; i < cueTotal; ++i) {
        const Pixel color = colorOf(i);
        std::array<char, 8> hex{};
        std::snprintf(hex.data(), hex.size(), "#%02x%02x%02x", static_cast<unsigned>(color[0]),
                      static_cast<unsigned>(color[1]), static_cast<unsigned>(color[2]));
        text += std::to_string(i + 1) + "\n" + timeText(i * cueDistance) + " --> " +
                timeText(i * cueDistance + cueLength) + "\n<font color=\"" + hex.data() +
                "\">\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88\xE2\x96\x88</font>\n\n";
    }
    return text;
}

/// The colour of most pixels that are not black; black where all are.
Pixel chiefColor(const std::string& pixels) {
    std::map<Pixel, int> counts;
    for (std::size_t i = 0; i + 2 < pixels.size(); i += 3) {
        const auto channel = [&](std::size_t at) {
            return static_cast<int>(static_cast<unsigned char>(pixels[at]));
        };
        const Pixel pixel{channel(i), channel(i + 1), channel(i + 2)};
        if (pixel != Pixel{0, 0, 0}) {
            ++counts[pixel];
        }
    }
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](auto& a, auto& b) { return a.second < b.second; });
    return most == counts.end() ? Pixel{0, 0, 0} : most->first;
}

TEST_F(Pictures, SeekStormNeverShowsAWrongCue) {
    const std::string file = folder.writeFile("many.srt", manyCues());
    tool::OverlayInput input;
    tool::Pipeline pipeline(
        "videotestsrc pattern=black ! video/x-raw,format=RGB,width=160,height=92,framerate=25/1 ! "
        "overlay.video_sink subtitlesrc name=subtitles ! overlay.text_sink "
        "textoverlay name=overlay auto-resize=false font-desc=\"Sans 20\" draw-shadow=false "
        "draw-outline=false ! video/x-raw,format=RGB ! fakesink name=sink");
    pipeline.set("subtitles", "location", file.c_str());
    input.watch(pipeline.find("overlay").get());
    pipeline.pause();
    std::mt19937 random(11);
    for (int round = 0; round < 1000; ++round) {
        const GstClockTime time = random() % (cueTotal * cueDistance);
        input.holdFrames();
        pipeline.seek(time * GST_MSECOND);
        const tool::SamplePtr sample = pipeline.lastSample("sink");
        ASSERT_NE(sample, nullptr);
        std::string pixels(160 * 92 * 3, '\0');
        gst_buffer_extract(gst_sample_get_buffer(sample.get()), 0, pixels.data(), pixels.size());
        const bool isShown = time % cueDistance < cueLength;
        const Pixel expected =
            isShown ? colorOf(static_cast<unsigned>(time / cueDistance)) : Pixel{0, 0, 0};
        ASSERT_EQ(chiefColor(pixels), expected) << "at " << time << " in round " << round;
    }
}

}  // namespace
