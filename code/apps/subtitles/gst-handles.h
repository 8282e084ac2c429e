// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Owners for what GStreamer hands out.

#pragma once

#include <memory>

#include <gst/gst.h>

namespace tool {

struct ObjectUnref {
    void operator()(gpointer object) const { gst_object_unref(object); }
};
struct MiniObjectUnref {
    template <class T>
    void operator()(T* object) const {
        gst_mini_object_unref(GST_MINI_OBJECT_CAST(object));
    }
};

using ElementPtr = std::unique_ptr<GstElement, ObjectUnref>;
using BusPtr = std::unique_ptr<GstBus, ObjectUnref>;
using MessagePtr = std::unique_ptr<GstMessage, MiniObjectUnref>;
using SamplePtr = std::unique_ptr<GstSample, MiniObjectUnref>;

}  // namespace tool
