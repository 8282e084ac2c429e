// SPDX-License-Identifier: LGPL-2.1-or-later

#include "picture.h"

#include <algorithm>

#include <gst/gst.h>

#include "exit-status.h"
#include "pipeline.h"

namespace tool {

namespace {

constexpr int margin = 6;
constexpr int mostColumns = 3;
constexpr unsigned char sheetGrey = 0x30;

void paste(const Picture& picture, Picture& sheet, int left, int top) {
    const auto rowSize = static_cast<std::size_t>(picture.width) * 3;
    for (int y = 0; y < picture.height; ++y) {
        const char* const row =
            &picture.pixels[static_cast<std::size_t>(y) * stride(picture.width)];
        const std::size_t target = static_cast<std::size_t>(top + y) * stride(sheet.width) +
                                   static_cast<std::size_t>(left) * 3;
        std::copy_n(row, rowSize, &sheet.pixels[target]);
    }
}

GstBuffer* toBuffer(const Picture& picture) {
    GstBuffer* const buffer = gst_buffer_new_memdup(picture.pixels.data(), picture.pixels.size());
    GST_BUFFER_PTS(buffer) = 0;
    return buffer;
}

}  // namespace

std::size_t stride(int width) {
    return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
}

Picture plainPicture(int width, int height, unsigned char grey) {
    const std::size_t size = stride(width) * static_cast<std::size_t>(height);
    return {width, height, std::string(size, static_cast<char>(grey))};
}

Picture contactSheet(const std::vector<Picture>& pictures) {
    const auto count = static_cast<int>(pictures.size());
    const int columns = std::min(count, mostColumns);
    const int cellWidth = pictures.front().width + margin;
    const int cellHeight = pictures.front().height + margin;
    const int rows = (count + columns - 1) / columns;
    Picture sheet =
        plainPicture(columns * cellWidth + margin, rows * cellHeight + margin, sheetGrey);
    for (int i = 0; i < count; ++i) {
        paste(pictures[static_cast<std::size_t>(i)], sheet, margin + i % columns * cellWidth,
              margin + i / columns * cellHeight);
    }
    return sheet;
}

std::string encodePNG(const Picture& picture) {
    const std::string caps =
        "video/x-raw,format=RGB,framerate=1/1,width=" + std::to_string(picture.width) +
        ",height=" + std::to_string(picture.height);
    // One buffer and then the end: the source would wait for more otherwise.
    Pipeline pipeline("appsrc name=source format=time caps=\"" + caps +
                      "\" ! pngenc compression-level=9 ! fakesink name=sink sync=false");
    const ElementPtr source = pipeline.find("source");
    GstBuffer* const buffer = toBuffer(picture);
    GstFlowReturn flow = GST_FLOW_OK;
    g_signal_emit_by_name(source.get(), "push-buffer", buffer, &flow);
    gst_buffer_unref(buffer);
    g_signal_emit_by_name(source.get(), "end-of-stream", &flow);
    pipeline.run();
    const SamplePtr sample = pipeline.lastSample("sink");
    if (!sample) {
        throw Failure("the picture cannot be encoded");
    }
    GstBuffer* const encoded = gst_sample_get_buffer(sample.get());
    std::string bytes(gst_buffer_get_size(encoded), '\0');
    bytes.resize(gst_buffer_extract(encoded, 0, bytes.data(), bytes.size()));
    return bytes;
}

}  // namespace tool
