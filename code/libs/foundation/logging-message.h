// SPDX-License-Identifier: LGPL-2.1-or-later
//
// One log message, and how its text is made when somebody asks for it. This is the only public
// header that needs fmt.

#pragma once

#include <chrono>
#include <cstdint>
#include <tuple>
#include <utility>

#include <fmt/format.h>
#include <fmt/printf.h>

#include "foundation/exception.h"
#include "foundation/export.h"
#include "foundation/string-view.h"
#include "foundation/string.h"

namespace fmt {

/// Prints an exception as its text and, on the next line, what is attached to it.
template <>
struct formatter<fn::Exception> {
    constexpr auto parse(format_parse_context& context) { return context.begin(); }

    template <class Context>
    auto format(const fn::Exception& exception, Context& context) const {
        const fn::String details = fn::getInfoDescription(exception, true, {});
        return fmt::format_to(context.out(), "{}{}{}", fn::to_string_view(exception.displayText()),
                              details.empty() ? "" : "\n", fn::to_string_view(details));
    }
};

}  // namespace fmt

namespace fn::logging {

/// Tells the objects of one class apart in a log.
struct Tag {
    String name;
    std::int32_t number = 0;
};

/// One message on its way to a sink. It refers to the arguments of the log statement, and so lives
/// only as long as the statement runs; a sink that keeps a clone asks for its text before `log`
/// returns.
class FOUNDATION_EXPORT Message {
public:
    /// 2 is an error, 5 a step-by-step trace.
    enum class Priority : std::int32_t { Error = 2, Trace = 5 };

    Message(Priority messagePriority, StringView fileName, std::int32_t lineNumber,
            StringView functionName, StringView signature, const void* loggingObject,
            Tag objectTag);
    Message(const Message&) = default;
    Message& operator=(const Message&) = default;

    /// The finished text, made anew at each call.
    virtual String text() const = 0;
    /// A copy that the caller owns.
    virtual Message* clone() const = 0;
    virtual ~Message();

    std::chrono::system_clock::time_point time;
    Priority priority;
    StringView file;
    std::int32_t line;
    StringView function;
    StringView prettyFunction;
    const void* object;  ///< The object that logs; null in static contexts.
    Tag tag;
};

namespace internal {

/// `{}` placeholders.
struct Formatter {
    template <class... Args>
    static String format(const String& format, const std::tuple<Args...>& args) {
        return std::apply(
            [&](const auto&... each) {
                return String(fmt::format(fmt::runtime(to_string_view(format)), each...));
            },
            args);
    }
};

/// printf-style placeholders.
struct FormatterF {
    template <class... Args>
    static String format(const String& format, const std::tuple<Args...>& args) {
        return std::apply(
            [&](const auto&... each) {
                return String(fmt::sprintf(to_string_view(format), each...));
            },
            args);
    }
};

template <class FormatterType, class... Args>
class MessageImpl final : public Message {
public:
    MessageImpl(Priority messagePriority, StringView fileName, std::int32_t lineNumber,
                StringView functionName, StringView signature, const void* loggingObject,
                const Tag& objectTag, String format, Args... args)
        : Message(messagePriority, fileName, lineNumber, functionName, signature, loggingObject,
                  objectTag),
          formatText(std::move(format)),
          arguments(std::forward<Args>(args)...) {}

    String text() const override { return FormatterType::format(formatText, arguments); }
    MessageImpl* clone() const override { return new MessageImpl(*this); }

private:
    String formatText;
    std::tuple<Args...> arguments;  ///< As they were passed: references stay references.
};

}  // namespace internal
}  // namespace fn::logging
