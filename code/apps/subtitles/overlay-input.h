// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <condition_variable>
#include <mutex>

#include <gst/gst.h>

namespace tool {

/// Sees to it that an element that draws text on frames gets after a seek what belongs together.
///
/// A seek goes to the film and then to the text. What draws has the old text still when the film's
/// new frame comes, and takes it for the new one; so frames are held until the text has followed.
/// And a frame that begins before the time of the seek has no place in the new segment: the element
/// would draw nothing on it. It is cut to begin at that time.
class OverlayInput {
public:
    OverlayInput() = default;
    OverlayInput(const OverlayInput&) = delete;
    OverlayInput& operator=(const OverlayInput&) = delete;
    ~OverlayInput() = default;

    /// Watches the pads "video_sink" and "text_sink" of the element, until that is gone.
    void watch(GstElement* overlay);

    /// To be called ahead of each flushing seek, while no frame is on its way.
    void holdFrames();

private:
    static GstPadProbeReturn _onFrame(GstPad* pad, GstPadProbeInfo* info, gpointer self);
    static GstPadProbeReturn _onTextEvent(GstPad* pad, GstPadProbeInfo* info, gpointer self);

    void waitForText();

    std::mutex mutex;
    std::condition_variable textFollowed;
    bool hasText = true;
};

}  // namespace tool
