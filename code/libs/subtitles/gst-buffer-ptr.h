// SPDX-License-Identifier: LGPL-2.1-or-later
//
// How `fn::AutoPtr<_GstBuffer>` counts. Include this wherever such a pointer is made, copied or
// destroyed.

#pragma once

#include <gst/gst.h>

#include "foundation/auto-ptr.h"

template <>
struct fn::AutoPtrTraits<_GstBuffer> {
    static void take(_GstBuffer* buffer) { gst_mini_object_ref(GST_MINI_OBJECT_CAST(buffer)); }
    static void drop(_GstBuffer* buffer) { gst_mini_object_unref(GST_MINI_OBJECT_CAST(buffer)); }
};
