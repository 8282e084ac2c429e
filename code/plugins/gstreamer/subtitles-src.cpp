// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The element reads its file on the streaming thread, so that a slow disk holds up no state change,
// and then hands out one buffer a cue. Gaps between cues are told downstream as gap events: an
// element that draws text would wait for the next cue otherwise.

#include "plugins/gstreamer/subtitles-src.h"

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <foundation/exception.h>

#include "plugins/gstreamer/payload.h"
#include "plugins/gstreamer/stream-tags.h"
#include "plugins/gstreamer/subtitles-src-state.h"

GST_DEBUG_CATEGORY_STATIC(subtitles_src_debug);
#define GST_CAT_DEFAULT subtitles_src_debug

// The macro is C, and casts like it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
G_DEFINE_TYPE(SubtitlesSrc, subtitles_src, GST_TYPE_BASE_SRC)
#pragma GCC diagnostic pop

namespace {

using subtitles::element::CueTrack;
using subtitles::element::ObjectLock;
using subtitles::element::Payload;
using subtitles::element::self;
using subtitles::element::Span;
using subtitles::element::State;
using subtitles::element::TrackRequest;

GstStaticPadTemplate sourceTemplate = GST_STATIC_PAD_TEMPLATE(
    "src", GST_PAD_SRC, GST_PAD_ALWAYS,
    GST_STATIC_CAPS("text/x-raw, format=(string)pango-markup; text/x-raw, format=(string)utf8; "
                    "application/x-ass"));

// Loading

/// What the file turned out to be, for whoever reads the properties, and for the bus.
void publish(SubtitlesSrc* source, std::shared_ptr<const CueTrack> track) {
    State& state = *source->state;
    {
        const ObjectLock lock(source);
        state.track = std::move(track);
        state.detectedFormat = state.track->reference().mimeType;
        state.detectedEncoding = state.track->encoding();
        state.cueCount = static_cast<guint>(state.track->order().size());
        state.duration = state.track->order().end();
        GST_BASE_SRC(source)->segment.duration = state.duration;
    }
    GST_INFO_OBJECT(source, "%u cues of type %s in %s", state.cueCount,
                    state.detectedFormat.c_str(), state.detectedEncoding.c_str());
    subtitles::element::notifyDetected(source);
    gst_element_post_message(GST_ELEMENT(source),
                             gst_message_new_duration_changed(GST_OBJECT(source)));
}

/// Reads the file, once. False where that failed, and then the error is on the bus.
bool ensureLoaded(SubtitlesSrc* source) {
    State& state = *source->state;
    if (state.track || state.hasFailed) {
        return !state.hasFailed;
    }
    TrackRequest request;
    {
        const ObjectLock lock(source);
        request = state.request;
    }
    try {
        publish(source, std::make_shared<const CueTrack>(CueTrack::load(request)));
    } catch (const std::exception& exception) {
        GST_ELEMENT_ERROR(
            source, RESOURCE, OPEN_READ, ("%s", exception.what()),
            ("location '%s', encoding '%s'", request.location.c_str(), request.encoding.c_str()));
        subtitles::element::forgetDetected(source);
        state.hasFailed = true;
        return false;
    }
    state.tagsPending = true;
    return true;
}

gboolean stop(GstBaseSrc* base) {
    SubtitlesSrc* const source = self(base);
    State& state = *source->state;
    state.cursor.reset();
    state.segmentPending = true;
    state.hasFailed = false;
    const ObjectLock lock(source);
    state.seqnum = GST_SEQNUM_INVALID;
    state.track.reset();
    state.duration = GST_CLOCK_TIME_NONE;
    return TRUE;
}

// Caps

std::shared_ptr<const CueTrack> trackOf(SubtitlesSrc* source) {
    const ObjectLock lock(source);
    return source->state->track;
}

GstCaps* assCaps(const CueTrack& track) {
    const fn::String head = track.scriptHead();
    GstBuffer* const codecData = gst_buffer_new_memdup(head.data(), head.size());
    GstCaps* const caps =
        gst_caps_new_simple("application/x-ass", "codec_data", GST_TYPE_BUFFER, codecData, nullptr);
    gst_buffer_unref(codecData);
    return caps;
}

GstCaps* textCaps() {
    return gst_caps_from_string(
        "text/x-raw, format=(string)pango-markup; text/x-raw, format=(string)utf8");
}

/// What the file can be given out as, its own form first.
GstCaps* getCaps(GstBaseSrc* base, GstCaps* filter) {
    const std::shared_ptr<const CueTrack> track = trackOf(self(base));
    GstCaps* caps = nullptr;
    if (!track) {
        caps = gst_static_pad_template_get_caps(&sourceTemplate);
    } else if (track->isASS()) {
        caps = gst_caps_merge(assCaps(*track), textCaps());
    } else {
        caps = gst_caps_merge(textCaps(), assCaps(*track));
    }
    if (filter != nullptr) {
        GstCaps* const both = gst_caps_intersect_full(filter, caps, GST_CAPS_INTERSECT_FIRST);
        gst_caps_unref(caps);
        caps = both;
    }
    return caps;
}

gboolean setCaps(GstBaseSrc* base, GstCaps* caps) {
    const GstStructure* const structure = gst_caps_get_structure(caps, 0);
    const char* const format = gst_structure_get_string(structure, "format");
    Payload& payload = self(base)->state->payload;
    if (gst_structure_has_name(structure, "application/x-ass")) {
        payload = Payload::ASS;
    } else {
        payload = g_strcmp0(format, "utf8") == 0 ? Payload::PlainText : Payload::PangoMarkup;
    }
    return TRUE;
}

gboolean negotiate(GstBaseSrc* base) {
    return ensureLoaded(self(base)) &&
           GST_BASE_SRC_CLASS(subtitles_src_parent_class)->negotiate(base);
}

// Events that go downstream between the base class's own

/// The base class sends a segment only ahead of a buffer. Where the segment has no cue it is sent
/// here: whoever waits for the text of a new position learns that way that there is none.
void pushSegment(SubtitlesSrc* source) {
    State& state = *source->state;
    if (!state.segmentPending) {
        return;
    }
    GstEvent* const event = gst_event_new_segment(&GST_BASE_SRC(source)->segment);
    {
        const ObjectLock lock(source);
        if (state.seqnum != GST_SEQNUM_INVALID) {
            gst_event_set_seqnum(event, state.seqnum);
        }
    }
    gst_pad_push_event(GST_BASE_SRC_PAD(source), event);
}

void pushTags(SubtitlesSrc* source) {
    State& state = *source->state;
    if (state.tagsPending) {
        state.tagsPending = false;
        GstTagList* const tags = subtitles::element::makeTags(state.track->reference());
        gst_pad_push_event(GST_BASE_SRC_PAD(source), gst_event_new_tag(tags));
    }
}

// Cues

GstBuffer* makeBuffer(const fn::String& payload, const Span& span) {
    GstBuffer* const buffer = gst_buffer_new_memdup(payload.data(), payload.size());
    GST_BUFFER_PTS(buffer) = span.start;
    GST_BUFFER_DURATION(buffer) = span.end - span.start;
    return buffer;
}

fn::String payloadOf(const State& state, std::size_t index) {
    switch (state.payload) {
        case Payload::ASS: return state.track->event(index);
        case Payload::PlainText: return subtitles::element::toPlainText(state.track->text(index));
        case Payload::PangoMarkup: break;
    }
    return subtitles::element::toPangoMarkup(state.track->text(index));
}

/// The payload of the cue; nothing where it cannot be read, which costs no other cue.
std::optional<fn::String> readPayload(SubtitlesSrc* source, std::size_t index) {
    try {
        return payloadOf(*source->state, index);
    } catch (const fn::Exception& exception) {
        GST_ELEMENT_WARNING(source, STREAM, DECODE, ("%s", exception.what()),
                            ("cue %" G_GSIZE_FORMAT, index));
        return {};
    }
}

/// The next buffer of the segment; null where none is left.
GstBuffer* nextBuffer(SubtitlesSrc* source) {
    State& state = *source->state;
    while (const auto index = state.cursor->next()) {
        const std::optional<fn::String> payload = readPayload(source, *index);
        // A cue without text shows nothing, so its time is part of a gap.
        if (payload && !payload->empty()) {
            state.gap = state.cursor->tell(*index);
            return makeBuffer(*payload, state.track->order()[*index]);
        }
    }
    return nullptr;
}

GstFlowReturn create(GstBaseSrc* base, guint64, guint, GstBuffer** buffer) {
    SubtitlesSrc* const source = self(base);
    State& state = *source->state;
    if (!ensureLoaded(source)) {
        return GST_FLOW_ERROR;
    }
    if (!state.cursor) {
        state.cursor.emplace(state.track->order(), base->segment);
    }
    *buffer = nextBuffer(source);
    if (*buffer == nullptr) {
        pushSegment(source);
        pushTags(source);
        return GST_FLOW_EOS;
    }
    return GST_FLOW_OK;
}

gboolean doSeek(GstBaseSrc* base, GstSegment* segment) {
    GST_DEBUG_OBJECT(base, "seek to %" GST_SEGMENT_FORMAT, static_cast<void*>(segment));
    State& state = *self(base)->state;
    segment->time = segment->start;
    state.cursor.reset();
    state.segmentPending = true;
    return TRUE;
}

gboolean isSeekable(GstBaseSrc*) {
    return TRUE;
}

gboolean answerDuration(SubtitlesSrc* source, GstQuery* query) {
    GstFormat format = GST_FORMAT_UNDEFINED;
    gst_query_parse_duration(query, &format, nullptr);
    const ObjectLock lock(source);
    if (format != GST_FORMAT_TIME || source->state->duration == GST_CLOCK_TIME_NONE) {
        return FALSE;
    }
    gst_query_set_duration(query, GST_FORMAT_TIME, static_cast<gint64>(source->state->duration));
    return TRUE;
}

/// Where the subtitles come from, which the stream's identity is made of.
gboolean answerURI(SubtitlesSrc* source, GstQuery* query) {
    const std::shared_ptr<const CueTrack> track = trackOf(source);
    gchar* const uri =
        track ? gst_filename_to_uri(track->reference().path.c_str(), nullptr) : nullptr;
    if (uri == nullptr) {
        return FALSE;
    }
    gst_query_set_uri(query, uri);
    g_free(uri);
    return TRUE;
}

gboolean query(GstBaseSrc* base, GstQuery* query) {
    switch (GST_QUERY_TYPE(query)) {
        case GST_QUERY_DURATION: return answerDuration(self(base), query);
        case GST_QUERY_URI: return answerURI(self(base), query);
        default: return GST_BASE_SRC_CLASS(subtitles_src_parent_class)->query(base, query);
    }
}

// What comes from upstream and goes downstream beside the buffers

/// Gaps belong behind the segment, which the base class sends only when it has a buffer; so they go
/// in front of the buffer when that passes the pad.
GstPadProbeReturn onBuffer(GstPad* pad, GstPadProbeInfo*, gpointer object) {
    State& state = *self(object)->state;
    pushTags(self(object));
    const Span gap = state.gap;
    state.gap = {0, 0};
    if (gap.end > gap.start) {
        gst_pad_push_event(pad, gst_event_new_gap(gap.start, gap.end - gap.start));
    }
    return GST_PAD_PROBE_OK;
}

/// The stream's start tells what the stream is; so the file is read by then.
GstPadProbeReturn onEvent(GstPad* pad, GstPadProbeInfo* info, gpointer object) {
    SubtitlesSrc* const source = self(object);
    GstEvent* const event = GST_PAD_PROBE_INFO_EVENT(info);
    if (GST_EVENT_TYPE(event) == GST_EVENT_SEGMENT) {
        source->state->segmentPending = false;
    } else if (GST_EVENT_TYPE(event) == GST_EVENT_STREAM_START && ensureLoaded(source)) {
        info->data =
            subtitles::element::describeStream(event, pad, source->state->track->reference());
    }
    return GST_PAD_PROBE_OK;
}

gboolean onUpstreamEvent(GstBaseSrc* base, GstEvent* event) {
    if (GST_EVENT_TYPE(event) == GST_EVENT_SEEK) {
        const ObjectLock lock(self(base));
        self(base)->state->seqnum = gst_event_get_seqnum(event);
    }
    return GST_BASE_SRC_CLASS(subtitles_src_parent_class)->event(base, event);
}

void finalize(GObject* object) {
    delete self(object)->state;
    G_OBJECT_CLASS(subtitles_src_parent_class)->finalize(object);
}

// The class

void installOperations(GstBaseSrcClass* baseClass) {
    baseClass->stop = stop;
    baseClass->get_caps = getCaps;
    baseClass->set_caps = setCaps;
    baseClass->negotiate = negotiate;
    baseClass->create = create;
    baseClass->do_seek = doSeek;
    baseClass->is_seekable = isSeekable;
    baseClass->query = query;
    baseClass->event = onUpstreamEvent;
}

}  // namespace

static void subtitles_src_class_init(SubtitlesSrcClass* klass) {
    GST_DEBUG_CATEGORY_INIT(subtitles_src_debug, "subtitlesrc", 0, "Subtitle file source");
    GObjectClass* const objectClass = G_OBJECT_CLASS(klass);
    objectClass->finalize = finalize;
    subtitles::element::installProperties(objectClass);
    installOperations(GST_BASE_SRC_CLASS(klass));
    GstElementClass* const elementClass = GST_ELEMENT_CLASS(klass);
    gst_element_class_add_static_pad_template(elementClass, &sourceTemplate);
    gst_element_class_set_static_metadata(
        elementClass, "Subtitle file source", "Source/Subtitle/File",
        "Reads a subtitle file (SRT, MicroDVD, ASS, SSA, SMI) into timed text", "subtitles");
}

static void subtitles_src_init(SubtitlesSrc* source) {
    source->state = new State;
    source->state->request.encoding = "auto";
    GstBaseSrc* const base = GST_BASE_SRC(source);
    gst_base_src_set_format(base, GST_FORMAT_TIME);
    gst_base_src_set_live(base, FALSE);
    // Otherwise a cue that outlasts the segment would end the stream, and cues that begin later and
    // overlap it would be missing.
    gst_base_src_set_automatic_eos(base, FALSE);
    GstPad* const pad = GST_BASE_SRC_PAD(base);
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, onBuffer, source, nullptr);
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onEvent, source, nullptr);
}
