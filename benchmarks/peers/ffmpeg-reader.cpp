// SPDX-License-Identifier: LGPL-2.1-or-later
//
// FFmpeg through its public interface: the file comes from memory, the demuxer is found as FFmpeg
// finds it, each packet goes through the decoder, and the decoded events are kept.

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include "benchmarks/peers/reader.h"

namespace peers {
namespace {

/// A position in the file's bytes, for FFmpeg to read and seek in.
struct Source {
    const std::string* file;
    std::size_t position;

    static int read(void* opaque, std::uint8_t* to, int wanted) {
        auto* const self = static_cast<Source*>(opaque);
        const std::size_t left = self->file->size() - self->position;
        const std::size_t size = std::min(left, static_cast<std::size_t>(wanted));
        if (size == 0) {
            return AVERROR_EOF;
        }
        std::memcpy(to, self->file->data() + self->position, size);
        self->position += size;
        return static_cast<int>(size);
    }

    static std::int64_t seek(void* opaque, std::int64_t offset, int whence) {
        auto* const self = static_cast<Source*>(opaque);
        const auto size = static_cast<std::int64_t>(self->file->size());
        switch (whence & ~AVSEEK_FORCE) {
            case AVSEEK_SIZE: return size;
            case SEEK_CUR: offset += static_cast<std::int64_t>(self->position); break;
            case SEEK_END: offset += size; break;
            default: break;
        }
        self->position = static_cast<std::size_t>(std::clamp<std::int64_t>(offset, 0, size));
        return static_cast<std::int64_t>(self->position);
    }
};

struct CloseInput {
    void operator()(AVFormatContext* input) const { avformat_close_input(&input); }
};
struct FreeDecoder {
    void operator()(AVCodecContext* decoder) const { avcodec_free_context(&decoder); }
};
struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FreeIO {
    void operator()(AVIOContext* io) const {
        av_freep(&io->buffer);
        avio_context_free(&io);
    }
};

template <class Pointer>
Pointer required(Pointer pointer, const char* what) {
    if (!pointer) {
        throw std::runtime_error(std::string("FFmpeg: ") + what);
    }
    return pointer;
}

class FFmpegReader : public Reader {
public:
    FFmpegReader() { av_log_set_level(AV_LOG_QUIET); }
    FFmpegReader(const FFmpegReader&) = delete;
    FFmpegReader& operator=(const FFmpegReader&) = delete;
    ~FFmpegReader() override { FFmpegReader::release(); }

    std::size_t read(const std::string& file) override {
        Source source{&file, 0};
        constexpr int blockSize = 32768;
        const std::unique_ptr<AVIOContext, FreeIO> io(
            required(avio_alloc_context(static_cast<unsigned char*>(av_malloc(blockSize)),
                                        blockSize, 0, &source, Source::read, nullptr, Source::seek),
                     "no memory"));
        AVFormatContext* opened = required(avformat_alloc_context(), "no memory");
        opened->pb = io.get();
        // Frees the context where it fails.
        if (avformat_open_input(&opened, "", nullptr, nullptr) < 0) {
            throw std::runtime_error("FFmpeg: no demuxer for the file");
        }
        const std::unique_ptr<AVFormatContext, CloseInput> input(opened);
        decodeAll(*input);
        return events.size();
    }

    void release() override {
        for (AVSubtitle& event : events) {
            avsubtitle_free(&event);
        }
        events = std::vector<AVSubtitle>();
    }

private:
    void decodeAll(AVFormatContext& input) {
        const AVCodecParameters& parameters = *input.streams[0]->codecpar;
        const AVCodec* const codec =
            required(avcodec_find_decoder(parameters.codec_id), "no decoder");
        const std::unique_ptr<AVCodecContext, FreeDecoder> decoder(
            required(avcodec_alloc_context3(codec), "no memory"));
        avcodec_parameters_to_context(decoder.get(), &parameters);
        decoder->pkt_timebase = input.streams[0]->time_base;
        if (avcodec_open2(decoder.get(), codec, nullptr) < 0) {
            throw std::runtime_error("FFmpeg: the decoder does not open");
        }
        const std::unique_ptr<AVPacket, FreePacket> packet(
            required(av_packet_alloc(), "no memory"));
        while (av_read_frame(&input, packet.get()) >= 0) {
            AVSubtitle event = {};
            int isComplete = 0;
            avcodec_decode_subtitle2(decoder.get(), &event, &isComplete, packet.get());
            if (isComplete != 0) {
                events.push_back(event);
            }
            av_packet_unref(packet.get());
        }
    }

    std::vector<AVSubtitle> events;
};

}  // namespace

std::unique_ptr<Reader> makeFFmpeg() {
    return std::make_unique<FFmpegReader>();
}

}  // namespace peers
