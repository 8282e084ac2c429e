// SPDX-License-Identifier: LGPL-2.1-or-later

#include "plugins/gstreamer/stream-tags.h"

#include <string>

namespace subtitles::element {

GstTagList* makeTags(const SubtitleReference& reference) {
    GstTagList* const tags = gst_tag_list_new_empty();
    if (!reference.languageCode.empty()) {
        const std::string code = reference.languageCode.toLowerCase();
        gst_tag_list_add(tags, GST_TAG_MERGE_REPLACE, GST_TAG_LANGUAGE_CODE, code.c_str(),
                         GST_TAG_LANGUAGE_NAME, reference.languageName().c_str(), nullptr);
    } else if (!reference.customLanguageName.empty()) {
        gst_tag_list_add(tags, GST_TAG_MERGE_REPLACE, GST_TAG_LANGUAGE_NAME,
                         reference.customLanguageName.c_str(), nullptr);
    }
    const fn::String title = reference.name.empty() ? reference.languageName() : reference.name;
    gst_tag_list_add(tags, GST_TAG_MERGE_REPLACE, GST_TAG_TITLE, title.c_str(), nullptr);
    return tags;
}

GstEvent* describeStream(GstEvent* streamStart, const SubtitleReference& reference) {
    const gchar* id = nullptr;
    gst_event_parse_stream_start(streamStart, &id);
    GstStream* const stream =
        gst_stream_new(id, nullptr, GST_STREAM_TYPE_TEXT, GST_STREAM_FLAG_SPARSE);
    GstTagList* const tags = makeTags(reference);
    gst_stream_set_tags(stream, tags);
    gst_tag_list_unref(tags);
    GstEvent* const event = GST_EVENT_CAST(gst_event_make_writable(streamStart));
    gst_event_set_stream(event, stream);
    gst_event_set_stream_flags(event, GST_STREAM_FLAG_SPARSE);
    gst_object_unref(stream);
    return event;
}

}  // namespace subtitles::element
