// SPDX-License-Identifier: LGPL-2.1-or-later

#include "subtitles/gst-logging.h"

#include <memory>
#include <string>

#include <gst/gst.h>

namespace subtitles {
namespace {

GstDebugLevel levelOf(fn::logging::Message::Priority priority) {
    return priority == fn::logging::Message::Priority::Error ? GST_LEVEL_ERROR : GST_LEVEL_DEBUG;
}

class GstSink final : public fn::logging::Sink {
public:
    // GStreamer gives the category that exists already where there is one of this name. It is null
    // where GStreamer was built without its debug log.
    explicit GstSink(const fn::String& category)
        : debugCategory(_gst_debug_category_new(category.c_str(), 0, "Text subtitles")) {}

    bool wants(fn::logging::Message::Priority priority) const override {
        return debugCategory != nullptr &&
               levelOf(priority) <= gst_debug_category_get_threshold(debugCategory);
    }

    // The logging object is no GObject, so GStreamer is not told about it.
    void write(const fn::logging::Message& message) override {
        gst_debug_log_literal(
            debugCategory, levelOf(message.priority), std::string(message.file).c_str(),
            std::string(message.function).c_str(), message.line, nullptr, message.text().c_str());
    }

private:
    GstDebugCategory* debugCategory;
};

fn::logging::CategoryManager& managerWithSinks() {
    fn::logging::CategoryManager& manager = fn::logging::CategoryManager::instance();
    manager.setDefaultSinkFactory(
        [](const fn::String& category) { return std::make_unique<GstSink>(category); });
    return manager;
}

}  // namespace

fn::logging::Category* loggingCategory(const fn::String& name) {
    static fn::logging::CategoryManager& manager = managerWithSinks();
    return manager.getCategory(name);
}

}  // namespace subtitles
