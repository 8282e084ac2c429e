// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Logging by category. A class that logs has the static member `_fn_getLoggingCategoryStatic()`
// and the member `_fn_getLoggingTag()`, and writes
//
//     FN_LOG(Error, Formatter)("Error while parsing SubtitleReference: {}", exception);
//
// Where the messages go is up to a sink, and their text is made only if a sink asks for it.

#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

#include "foundation/export.h"
#include "foundation/logging-message.h"
#include "foundation/string.h"

namespace fn::logging {

/// Where the messages of one category go. Called from any thread.
class FOUNDATION_EXPORT Sink {
public:
    Sink() = default;
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    virtual ~Sink();

    /// Whether a message of this priority would be kept.
    virtual bool wants(Message::Priority priority) const = 0;
    virtual void write(const Message& message) = 0;
};

/// A named stream of messages; lives as long as the process.
class FOUNDATION_EXPORT Category {
public:
    explicit Category(String name) : categoryName(std::move(name)) {}
    Category(const Category&) = delete;
    Category& operator=(const Category&) = delete;

    const String& name() const { return categoryName; }

    /// Delivers the message, or drops it before its text is made where there is no sink or the
    /// sink does not want its priority. Keeps no reference to it. Safe from any thread.
    void log(const Message& message) const;

private:
    friend class CategoryManager;

    String categoryName;
    std::atomic<Sink*> currentSink{nullptr};
};

/// Makes categories and gives them their sinks. All operations are safe from any thread.
class FOUNDATION_EXPORT CategoryManager {
public:
    using SinkFactory = std::function<std::unique_ptr<Sink>(const String& category)>;

    static CategoryManager& instance();

    CategoryManager(const CategoryManager&) = delete;
    CategoryManager& operator=(const CategoryManager&) = delete;

    /// The category of that name, made on first use, valid for the life of the process.
    Category* getCategory(const String& name);

    /// Makes the sinks of all categories anew, those that exist included; null goes back to the
    /// default. Sinks that were in use stay alive, since another thread may be writing to them.
    ///
    /// The factory may give null for a category whose messages nobody keeps. It must not call the
    /// manager.
    void setSinkFactory(SinkFactory factory);

    /// The same for where nobody has said where messages go: a library puts its own way of logging
    /// here, and the program that it runs in has the last word.
    void setDefaultSinkFactory(SinkFactory factory);

private:
    struct State;

    FOUNDATION_INTERNAL CategoryManager();
    FOUNDATION_INTERNAL ~CategoryManager();

    std::unique_ptr<State> state;
};

namespace internal {

/// What a log statement fills in before its arguments.
template <class FormatterType>
struct Adapter {
    Category* category;
    Message::Priority priority;
    StringView file;
    std::int32_t line;
    StringView function;
    StringView prettyFunction;
    const void* object;
    Tag tag;

    template <class... Args>
    void operator()(String format, Args&&... args) const {
        category->log(MessageImpl<FormatterType, Args...>(
            priority, file, line, function, prettyFunction, object, tag, std::move(format),
            std::forward<Args>(args)...));
    }
};

}  // namespace internal
}  // namespace fn::logging

/// Starts a log statement in a member function: `FN_LOG(Trace, FormatterF)("read %i", count)`.
#define FN_LOG(priority, formatter)                                                           \
    ::fn::logging::internal::Adapter<::fn::logging::internal::formatter> {                    \
        _fn_getLoggingCategoryStatic(), ::fn::logging::Message::Priority::priority, __FILE__, \
            __LINE__, __func__, __PRETTY_FUNCTION__, this, _fn_getLoggingTag()                \
    }
