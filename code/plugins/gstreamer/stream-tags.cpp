// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/stream-tags.h"

#include "plugins/gstreamer/valid-text.h"

namespace subtitles::element {

namespace {

void add(GstTagList* tags, const char* tag, const fn::String& text) {
    gst_tag_list_add(tags, GST_TAG_MERGE_REPLACE, tag, validText(text).c_str(), nullptr);
}

}  // namespace

GstTagList* makeTags(const SubtitleReference& reference) {
    GstTagList* const tags = gst_tag_list_new_empty();
    if (!reference.languageCode.empty()) {
        add(tags, GST_TAG_LANGUAGE_CODE, reference.languageCode.toLowerCase());
    }
    if (!reference.languageCode.empty() || !reference.customLanguageName.empty()) {
        add(tags, GST_TAG_LANGUAGE_NAME, reference.languageName());
    }
    add(tags, GST_TAG_TITLE, reference.name.empty() ? reference.languageName() : reference.name);
    return tags;
}

namespace {

/// One file may hold several streams.
fn::String nameInFile(const SubtitleReference& reference) {
    const auto name = reference.loaderProperties.find("class");
    return name != reference.loaderProperties.end() ? validText(name->second) : fn::String("text");
}

GstStream* makeStream(const gchar* id, const SubtitleReference& reference) {
    GstStream* const stream =
        gst_stream_new(id, nullptr, GST_STREAM_TYPE_TEXT, GST_STREAM_FLAG_SPARSE);
    GstTagList* const tags = makeTags(reference);
    gst_stream_set_tags(stream, tags);
    gst_tag_list_unref(tags);
    return stream;
}

}  // namespace

GstEvent* describeStream(GstEvent* streamStart, GstPad* pad, const SubtitleReference& reference) {
    GstElement* const element = gst_pad_get_parent_element(pad);
    gchar* const id = gst_pad_create_stream_id(pad, element, nameInFile(reference).c_str());
    gst_object_unref(element);
    GstEvent* const event = gst_event_new_stream_start(id);
    gst_event_set_seqnum(event, gst_event_get_seqnum(streamStart));
    guint group = 0;
    if (gst_event_parse_group_id(streamStart, &group) != FALSE) {
        gst_event_set_group_id(event, group);
    }
    GstStream* const stream = makeStream(id, reference);
    gst_event_set_stream(event, stream);
    gst_event_set_stream_flags(event, GST_STREAM_FLAG_SPARSE);
    gst_object_unref(stream);
    g_free(id);
    gst_event_unref(streamStart);
    return event;
}

}  // namespace subtitles::element
