// SPDX-License-Identifier: LGPL-2.1-or-later
//
// libass, which most players draw ASS with, reads what the tool writes.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <ass/ass.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/apps/run-tool.h"
#include "tests/apps/told-cues.h"
#include "tests/support/temporary-folder.h"

namespace {

using test::runTool;

struct Release {
    void operator()(ASS_Library* library) const { ass_library_done(library); }
    void operator()(ASS_Renderer* renderer) const { ass_renderer_done(renderer); }
    void operator()(ASS_Track* track) const { ass_free_track(track); }
};

/// A script as libass has it in memory.
class Script {
public:
    explicit Script(const std::string& path) : library(ass_library_init()) {
        ass_set_message_cb(
            library.get(), [](int, const char*, va_list, void*) {}, nullptr);
        std::string name = path;
        loaded.reset(ass_read_file(library.get(), name.data(), nullptr));
    }

    const ASS_Track& track() const { return *loaded; }

    /// "1000+1500 text", in milliseconds.
    std::vector<std::string> events() const {
        std::vector<std::string> result;
        for (int i = 0; i < loaded->n_events; ++i) {
            const ASS_Event& event = loaded->events[i];
            result.push_back(std::to_string(event.Start) + "+" + std::to_string(event.Duration) +
                             " " + event.Text);
        }
        return result;
    }

    /// The colours (red, green, blue) of what is drawn at a time, in milliseconds.
    std::set<std::uint32_t> colorsAt(long long time) {
        const std::unique_ptr<ASS_Renderer, Release> renderer(ass_renderer_init(library.get()));
        ass_set_frame_size(renderer.get(), 640, 360);
        ass_set_fonts(renderer.get(), nullptr, "sans-serif", ASS_FONTPROVIDER_AUTODETECT, nullptr,
                      1);
        std::set<std::uint32_t> colors;
        int change = 0;
        for (const ASS_Image* image = ass_render_frame(renderer.get(), loaded.get(), time, &change);
             image != nullptr; image = image->next) {
            colors.insert(image->color >> 8U);
        }
        return colors;
    }

private:
    std::unique_ptr<ASS_Library, Release> library;
    std::unique_ptr<ASS_Track, Release> loaded;
};

class ConvertForLibass : public testing::Test {
protected:
    Script convert(const std::string& name, const std::string& bytes) {
        const std::string out = folder.path("out.ass");
        const test::ToolAnswer answer =
            runTool({"convert", folder.writeFile(name, bytes), out, "--force"});
        EXPECT_EQ(answer.error, "");
        EXPECT_EQ(answer.status, 0);
        return Script(out);
    }

    test::TemporaryFolder folder;
};

constexpr const char* cues =
    "1\n00:00:01,000 --> 00:00:02,500\n<b>Bold</b>, plain\nsecond line\n\n"
    "2\n00:00:02,500 --> 00:00:05,250\n<font color=\"#ff0000\">Red</font>\n\n"
    "3\n10:00:00,000 --> 10:00:01,000\n  --> here, with commas,\n\n"
    "4\n100:00:00,000 --> 100:00:09,990\n<i>late</i>\n\n";

TEST_F(ConvertForLibass, HasTheSameEventsWithTheSameTimes) {
    EXPECT_THAT(
        convert("x.srt", cues).events(),
        testing::ElementsAre("1000+1500 {\\b900}Bold{\\b0}, plain\\Nsecond line",
                             "2500+2750 {\\c&H0000FF&}Red", "36000000+1000 --> here, with commas,",
                             "360000000+9990 {\\i1}late{\\i0}"));
}

/// An event's text without its override blocks, of which samples have no odd ones.
std::string withoutBlocks(std::string text) {
    for (std::size_t open = text.find('{'); open != std::string::npos; open = text.find('{')) {
        text.erase(open, text.find('}', open) + 1 - open);
    }
    return text;
}

TEST_F(ConvertForLibass, HasTheEventsOfSamplesOfEveryFormat) {
    for (const std::vector<std::string>& sample : test::sampleOfEveryFormat()) {
        const std::string out = folder.path("sample.ass");
        std::vector<std::string> arguments = {"convert", out, "--force"};
        arguments.insert(arguments.begin() + 1, sample.begin(), sample.end());
        ASSERT_EQ(runTool(arguments).error, "");
        std::vector<std::string> events = Script(out).events();
        std::transform(events.begin(), events.end(), events.begin(), withoutBlocks);
        EXPECT_EQ(events.size(), 32U);
        EXPECT_EQ(events, test::toldCues(sample));
    }
}

TEST_F(ConvertForLibass, HasTheDefaultStyle) {
    const Script script = convert("x.srt", cues);
    ASSERT_GE(script.track().n_styles, 1);
    const ASS_Style& style = script.track().styles[script.track().n_styles - 1];
    EXPECT_STREQ(style.Name, "Default");
    EXPECT_STREQ(style.FontName, "Arial");
    EXPECT_EQ(style.FontSize, 38);
    EXPECT_NE(style.Bold, 0);
    EXPECT_EQ(style.Italic, 0);
    EXPECT_EQ(style.PrimaryColour, 0xFFFFFF00U);
    EXPECT_EQ(style.OutlineColour, 0x0000003FU);
    EXPECT_EQ(style.BackColour, 0x0000007FU);
    EXPECT_EQ(style.Outline, 2.5);
    EXPECT_EQ(style.Alignment, 2);
    EXPECT_EQ(script.track().PlayResY, 720);
    EXPECT_EQ(script.track().events[0].Style, script.track().n_styles - 1);
}

TEST_F(ConvertForLibass, IsDrawnInItsColorsAndTimes) {
    Script script = convert("x.srt", cues);
    EXPECT_THAT(script.colorsAt(1500), testing::Contains(0xFFFFFFU));
    EXPECT_THAT(script.colorsAt(3000), testing::Contains(0xFF0000U));
    EXPECT_THAT(script.colorsAt(3000), testing::Not(testing::Contains(0xFFFFFFU)));
    EXPECT_THAT(script.colorsAt(6000), testing::IsEmpty());
}

}  // namespace
