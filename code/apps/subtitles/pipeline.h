// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <gst/gst.h>

#include "gst-handles.h"

namespace tool {

/// A pipeline that is stopped with the object. It waits for what it asks for, and throws `Failure`
/// with the words of the element that fails.
class Pipeline {
public:
    /// Builds what gst-launch would build. Elements that are to be reached by name have one.
    explicit Pipeline(const std::string& description);
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;
    ~Pipeline();

    template <class... Args>
    void set(const char* element, const char* property, Args... args) {
        g_object_set(find(element).get(), property, args..., nullptr);
    }
    ElementPtr find(const char* element) const;

    /// Paused, with the first frame at the sink.
    void pause();
    /// Plays to the end of the stream.
    void run();
    /// Paused, with the frame of this time at the sink. In nanoseconds.
    void seek(std::uint64_t time);

    /// In nanoseconds; nothing where the stream has no end.
    std::optional<std::uint64_t> duration() const;

    /// What the sink of this name got last; null where that is nothing.
    SamplePtr lastSample(const char* sink) const;

private:
    void waitFor(GstMessageType type);

    ElementPtr pipeline;
};

}  // namespace tool
