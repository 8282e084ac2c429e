// SPDX-License-Identifier: LGPL-2.1-or-later
//
// FFmpeg's reader takes the WebVTT that the tool writes.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/apps/run-tool.h"
#include "tests/apps/told-cues.h"
#include "tests/support/temporary-folder.h"

namespace {

using test::runTool;

struct Release {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

/// The text of an ASS event: behind its eighth comma and without override blocks.
std::string plainEvent(std::string_view event) {
    for (int comma = 0; comma < 8; ++comma) {
        event.remove_prefix(event.find(',') + 1);
    }
    std::string text;
    while (!event.empty()) {
        if (event.front() == '{') {
            event.remove_prefix(event.find('}') + 1);
            continue;
        }
        text += event.front();
        event.remove_prefix(1);
    }
    return text;
}

std::string decoded(AVCodecContext* decoder, AVPacket* packet) {
    AVSubtitle subtitle{};
    int isThere = 0;
    EXPECT_GE(avcodec_decode_subtitle2(decoder, &subtitle, &isThere, packet), 0);
    std::string text;
    for (unsigned i = 0; i < subtitle.num_rects; ++i) {
        text += plainEvent(subtitle.rects[i]->ass);
    }
    avsubtitle_free(&subtitle);
    return text;
}

/// "1000+1500 text" of every cue, in milliseconds.
std::vector<std::string> cuesOf(const std::string& path) {
    AVFormatContext* opened = nullptr;
    EXPECT_EQ(avformat_open_input(&opened, path.c_str(), nullptr, nullptr), 0);
    const std::unique_ptr<AVFormatContext, Release> file(opened);
    EXPECT_STREQ(file->iformat->name, "webvtt");
    const AVCodec* const codec = avcodec_find_decoder(AV_CODEC_ID_WEBVTT);
    const std::unique_ptr<AVCodecContext, Release> decoder(avcodec_alloc_context3(codec));
    decoder->pkt_timebase = file->streams[0]->time_base;
    EXPECT_EQ(avcodec_open2(decoder.get(), codec, nullptr), 0);
    std::vector<std::string> cues;
    const std::unique_ptr<AVPacket, Release> packet(av_packet_alloc());
    while (av_read_frame(file.get(), packet.get()) >= 0) {
        cues.push_back(std::to_string(packet->pts) + "+" + std::to_string(packet->duration) + " " +
                       decoded(decoder.get(), packet.get()));
        av_packet_unref(packet.get());
    }
    return cues;
}

class ConvertForFFmpeg : public testing::Test {
protected:
    std::vector<std::string> convert(const std::string& name, const std::string& bytes) {
        const std::string out = folder.path("out.vtt");
        const test::ToolAnswer answer =
            runTool({"convert", folder.writeFile(name, bytes), out, "--force"});
        EXPECT_EQ(answer.error, "");
        EXPECT_EQ(answer.status, 0);
        return cuesOf(out);
    }

    test::TemporaryFolder folder;
};

// The left-to-right mark at the front of every line of every run is meant; FFmpeg drops it.
TEST_F(ConvertForFFmpeg, HasTheSameCuesTimesAndText) {
    EXPECT_THAT(convert("x.srt",
                        "1\n00:00:01,000 --> 00:00:02,500\n<b>Bold</b>, plain\nsecond line\n\n"
                        "2\n00:00:02,500 --> 00:00:05,250\na --> b & c\n\n"
                        "3\n01:00:00,000 --> 01:00:01,001\n\u00A0\n\n"
                        "4\n100:00:00,000 --> 100:00:09,999\n<i>late</i>\n\n"),
                testing::ElementsAre("1000+1500 "
                                     "Bold"
                                     ", plain\\N"
                                     "second line",
                                     "2500+2750 "
                                     "a --> b & c",
                                     "3600000+1001 "
                                     "\\h",
                                     "360000000+9999 "
                                     "late"));
}

TEST_F(ConvertForFFmpeg, HasTheCuesOfSamplesOfEveryFormat) {
    for (const std::vector<std::string>& sample : test::sampleOfEveryFormat()) {
        const std::string out = folder.path("sample.vtt");
        std::vector<std::string> arguments = {"convert", out, "--force"};
        arguments.insert(arguments.begin() + 1, sample.begin(), sample.end());
        ASSERT_EQ(runTool(arguments).error, "");
        const std::vector<std::string> cues = cuesOf(out);
        EXPECT_EQ(cues.size(), 32U);
        EXPECT_EQ(cues, test::toldCues(sample));
    }
}

TEST_F(ConvertForFFmpeg, HasCuesWithBlankLinesInThem) {
    EXPECT_THAT(convert("x.srt", "1\n00:00:01,000 --> 00:00:02,500\na\r\r\rb\n\n"),
                testing::ElementsAre("1000+1500 "
                                     "a\\N"
                                     "\\N"
                                     "\\N"
                                     "b"));
}

TEST_F(ConvertForFFmpeg, HasCuesWithoutText) {
    EXPECT_THAT(
        convert("x.srt",
                "1\n00:00:01,000 --> 00:00:02,500\n\n2\n00:00:03,000 --> 00:00:04,500\nx\n"),
        testing::ElementsAre("1000+1500 ",
                             "3000+1500 "
                             "x"));
}

}  // namespace
