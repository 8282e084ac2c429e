// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The element's properties. They have the names of GStreamer's own subtitle elements where those
// have such a property.

#include "plugins/gstreamer/subtitles-src-state.h"

namespace subtitles::element {

namespace {

enum Property : guint {
    Location = 1,
    Reference,
    Language,
    SubtitleEncoding,
    VideoFps,
    DetectedFormat,
    DetectedEncoding,
    CueCount,
};

fn::String stringOf(const GValue* value) {
    const gchar* const text = g_value_get_string(value);
    return text == nullptr ? fn::String() : fn::String(text);
}

void setProperty(GObject* object, guint id, const GValue* value, GParamSpec* spec) {
    SubtitlesSrc* const source = self(object);
    const ObjectLock lock(source);
    TrackRequest& request = source->state->request;
    switch (id) {
        case Location: request.location = stringOf(value); break;
        case Reference: request.reference = stringOf(value); break;
        case Language: request.language = stringOf(value); break;
        case SubtitleEncoding: request.encoding = stringOf(value); break;
        case VideoFps:
            request.fpsNumerator = gst_value_get_fraction_numerator(value);
            request.fpsDenominator = gst_value_get_fraction_denominator(value);
            break;
        default: G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec); break;
    }
}

void getProperty(GObject* object, guint id, GValue* value, GParamSpec* spec) {
    SubtitlesSrc* const source = self(object);
    const ObjectLock lock(source);
    const State& state = *source->state;
    switch (id) {
        case Location: g_value_set_string(value, state.request.location.c_str()); break;
        case Reference: g_value_set_string(value, state.request.reference.c_str()); break;
        case Language: g_value_set_string(value, state.request.language.c_str()); break;
        case SubtitleEncoding: g_value_set_string(value, state.request.encoding.c_str()); break;
        case VideoFps:
            gst_value_set_fraction(value, state.request.fpsNumerator, state.request.fpsDenominator);
            break;
        case DetectedFormat: g_value_set_string(value, state.detectedFormat.c_str()); break;
        case DetectedEncoding: g_value_set_string(value, state.detectedEncoding.c_str()); break;
        case CueCount: g_value_set_uint(value, state.cueCount); break;
        default: G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec); break;
    }
}

void installProperty(GObjectClass* objectClass, Property id, GParamSpec* spec) {
    g_object_class_install_property(objectClass, id, spec);
}

constexpr auto readWrite = static_cast<GParamFlags>(static_cast<unsigned>(G_PARAM_READWRITE) |
                                                    static_cast<unsigned>(G_PARAM_STATIC_STRINGS) |
                                                    static_cast<unsigned>(GST_PARAM_MUTABLE_READY));
constexpr auto readOnly = static_cast<GParamFlags>(static_cast<unsigned>(G_PARAM_READABLE) |
                                                   static_cast<unsigned>(G_PARAM_STATIC_STRINGS));

}  // namespace

void installProperties(GObjectClass* objectClass) {
    objectClass->set_property = setProperty;
    objectClass->get_property = getProperty;
    installProperty(
        objectClass, Location,
        g_param_spec_string("location", "Location", "The subtitle file to read", "", readWrite));
    installProperty(
        objectClass, Reference,
        g_param_spec_string("reference", "Reference",
                            "A subtitle reference as JSON, in place of a location", "", readWrite));
    installProperty(objectClass, Language,
                    g_param_spec_string("language", "Language",
                                        "Code or name of the language to take from a file that "
                                        "holds several",
                                        "", readWrite));
    installProperty(
        objectClass, SubtitleEncoding,
        g_param_spec_string("subtitle-encoding", "Subtitle encoding",
                            "Encoding of the file; \"auto\" detects it", "auto", readWrite));
    installProperty(objectClass, VideoFps,
                    gst_param_spec_fraction("video-fps", "Video frame rate",
                                            "Frames a second, for files that count frames", 1, 1000,
                                            1000, 1, 24000, 1001, readWrite));
    installProperty(objectClass, DetectedFormat,
                    g_param_spec_string("detected-format", "Detected format",
                                        "Mime type of the file", "", readOnly));
    installProperty(objectClass, DetectedEncoding,
                    g_param_spec_string("detected-encoding", "Detected encoding",
                                        "Encoding that the file was read in", "", readOnly));
    installProperty(objectClass, CueCount,
                    g_param_spec_uint("cue-count", "Cue count", "Number of cues in the file", 0,
                                      G_MAXUINT, 0, readOnly));
}

void notifyDetected(SubtitlesSrc* source) {
    for (const char* const name : {"detected-format", "detected-encoding", "cue-count"}) {
        g_object_notify(G_OBJECT(source), name);
    }
}

void forgetDetected(SubtitlesSrc* source) {
    {
        const ObjectLock lock(source);
        State& state = *source->state;
        state.detectedFormat.clear();
        state.detectedEncoding.clear();
        state.cueCount = 0;
    }
    notifyDetected(source);
}

}  // namespace subtitles::element
