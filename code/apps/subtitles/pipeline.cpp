// SPDX-License-Identifier: LGPL-2.1-or-later

#include "pipeline.h"

#include "exit-status.h"

namespace tool {

namespace {

/// A frame that takes longer than this never comes.
constexpr GstClockTime patience = 120 * GST_SECOND;

struct ErrorFree {
    void operator()(GError* error) const { g_error_free(error); }
};
using ErrorPtr = std::unique_ptr<GError, ErrorFree>;

GstElement* build(const std::string& description) {
    GError* error = nullptr;
    GstElement* const pipeline =
        gst_parse_launch_full(description.c_str(), nullptr, GST_PARSE_FLAG_FATAL_ERRORS, &error);
    if (error != nullptr) {
        const ErrorPtr owned(error);
        throw Failure(std::string("cannot draw: ") + owned->message +
                      " (is a package of GStreamer's plug-ins missing?)");
    }
    return pipeline;
}

[[noreturn]] void raise(GstMessage* message) {
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    const ErrorPtr owned(error);
    throw Failure(owned->message);
}

}  // namespace

Pipeline::Pipeline(const std::string& description) : pipeline(build(description)) {}

Pipeline::~Pipeline() {
    gst_element_set_state(pipeline.get(), GST_STATE_NULL);
}

ElementPtr Pipeline::find(const char* element) const {
    return ElementPtr(gst_bin_get_by_name(GST_BIN(pipeline.get()), element));
}

void Pipeline::waitFor(GstMessageType type) {
    const BusPtr bus(gst_element_get_bus(pipeline.get()));
    const auto types = static_cast<GstMessageType>(static_cast<unsigned>(type) | GST_MESSAGE_ERROR);
    const MessagePtr message(gst_bus_timed_pop_filtered(bus.get(), patience, types));
    if (!message) {
        throw Failure("no frame comes out of the film");
    }
    if (GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_ERROR) {
        raise(message.get());
    }
}

void Pipeline::pause() {
    // Where that fails, the reason is on the bus.
    gst_element_set_state(pipeline.get(), GST_STATE_PAUSED);
    waitFor(GST_MESSAGE_ASYNC_DONE);
}

void Pipeline::run() {
    gst_element_set_state(pipeline.get(), GST_STATE_PLAYING);
    waitFor(GST_MESSAGE_EOS);
}

void Pipeline::seek(std::uint64_t time) {
    constexpr auto flags = static_cast<GstSeekFlags>(static_cast<unsigned>(GST_SEEK_FLAG_FLUSH) |
                                                     static_cast<unsigned>(GST_SEEK_FLAG_ACCURATE));
    if (gst_element_seek_simple(pipeline.get(), GST_FORMAT_TIME, flags,
                                static_cast<gint64>(time)) == FALSE) {
        throw Failure("the film cannot be searched for a time");
    }
    waitFor(GST_MESSAGE_ASYNC_DONE);
}

std::optional<std::uint64_t> Pipeline::duration() const {
    gint64 duration = -1;
    if (gst_element_query_duration(pipeline.get(), GST_FORMAT_TIME, &duration) == FALSE ||
        duration < 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(duration);
}

SamplePtr Pipeline::lastSample(const char* sink) const {
    GstSample* sample = nullptr;
    g_object_get(find(sink).get(), "last-sample", &sample, nullptr);
    return SamplePtr(sample);
}

}  // namespace tool
