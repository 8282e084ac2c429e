// SPDX-License-Identifier: LGPL-2.1-or-later
//
// GStreamer's subparse, driven through its pads as a pipeline drives it, but on the caller's
// thread: stream start, caps, segment, the bytes, end of stream. What comes out is kept.

#include <algorithm>
#include <stdexcept>
#include <vector>

#include <gst/gst.h>

#include "benchmarks/peers/reader.h"

namespace peers {
namespace {

/// What a file source pushes. With larger blocks the element takes longer, with the whole file in
/// one block quadratic time.
constexpr std::size_t blockSize = 4096;

struct Unref {
    void operator()(gpointer object) const { gst_object_unref(object); }
};
using Pad = std::unique_ptr<GstPad, Unref>;

class SubparseReader : public Reader {
public:
    SubparseReader() = default;
    SubparseReader(const SubparseReader&) = delete;
    SubparseReader& operator=(const SubparseReader&) = delete;
    ~SubparseReader() override { SubparseReader::release(); }

    std::size_t read(const std::string& file) override {
        const std::unique_ptr<GstElement, Unref> element(makeElement());
        const Pad source(gst_pad_new("source", GST_PAD_SRC));
        const Pad sink(gst_pad_new("sink", GST_PAD_SINK));
        gst_pad_set_element_private(sink.get(), this);
        gst_pad_set_chain_function(sink.get(), keep);
        link(source.get(), *element, sink.get());
        push(source.get(), file);
        gst_element_set_state(element.get(), GST_STATE_NULL);
        return buffers.size();
    }

    void release() override {
        for (GstBuffer* const buffer : buffers) {
            gst_buffer_unref(buffer);
        }
        buffers = std::vector<GstBuffer*>();
    }

private:
    static GstElement* makeElement() {
        GstElement* const element = gst_element_factory_make("subparse", nullptr);
        if (element == nullptr) {
            throw std::runtime_error("GStreamer has no subparse");
        }
        return GST_ELEMENT(gst_object_ref_sink(element));
    }

    static GstFlowReturn keep(GstPad* pad, GstObject*, GstBuffer* buffer) {
        static_cast<SubparseReader*>(gst_pad_get_element_private(pad))->buffers.push_back(buffer);
        return GST_FLOW_OK;
    }

    static void link(GstPad* source, GstElement& element, GstPad* sink) {
        const Pad in(gst_element_get_static_pad(&element, "sink"));
        const Pad out(gst_element_get_static_pad(&element, "src"));
        if (gst_pad_link(source, in.get()) != GST_PAD_LINK_OK ||
            gst_pad_link(out.get(), sink) != GST_PAD_LINK_OK) {
            throw std::runtime_error("GStreamer: pads do not link");
        }
        gst_pad_set_active(sink, TRUE);
        gst_element_set_state(&element, GST_STATE_PLAYING);
        gst_pad_set_active(source, TRUE);
    }

    static void push(GstPad* source, const std::string& file) {
        gst_pad_push_event(source, gst_event_new_stream_start("file"));
        GstCaps* const caps = gst_caps_new_empty_simple("application/x-subtitle");
        gst_pad_push_event(source, gst_event_new_caps(caps));
        gst_caps_unref(caps);
        GstSegment segment;
        gst_segment_init(&segment, GST_FORMAT_BYTES);
        gst_pad_push_event(source, gst_event_new_segment(&segment));
        for (std::size_t offset = 0; offset < file.size(); offset += blockSize) {
            const std::size_t size = std::min(blockSize, file.size() - offset);
            GstBuffer* const buffer = gst_buffer_new_memdup(file.data() + offset, size);
            GST_BUFFER_OFFSET(buffer) = offset;
            gst_pad_push(source, buffer);
        }
        gst_pad_push_event(source, gst_event_new_eos());
    }

    std::vector<GstBuffer*> buffers;
};

}  // namespace

std::unique_ptr<Reader> makeSubparse() {
    return std::make_unique<SubparseReader>();
}

}  // namespace peers
