// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <exception>

#include "foundation/error-info.h"
#include "foundation/export.h"
#include "foundation/string-view.h"
#include "foundation/string.h"

namespace fn {

/// What every failure of these libraries is. The text is for people: it names the file, the
/// encoding or the value that is at fault.
class FOUNDATION_EXPORT Exception : public std::exception {
public:
    /// Which stack trace an exception takes along; there is none so far.
    enum StackTrace { NoStackTrace = 0 };

    explicit Exception(const String& message, StackTrace stackTrace = NoStackTrace);
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    ~Exception() override;

    /// The bytes of `displayText()`, NUL-terminated.
    const char* what() const noexcept override;
    virtual const char* className() const noexcept = 0;

    const String& displayText() const { return messageText; }

    /// What was attached to the exception. It is copied along with it.
    const internal::ErrorHolder& errorInfo() const { return holder; }

    /// Attaches information: `exception << value.detailInfo()`.
    template <class Info>
    Exception& operator<<(const Info& info) {
        holder.set(info);
        return *this;
    }

private:
    String messageText;
    internal::ErrorHolder holder;
    String trace;  ///< Room for the stack trace's text.
};

// NOLINTBEGIN(bugprone-macro-parentheses): names of classes.
#define FOUNDATION_EXCEPTION(Name, Base)                 \
    class FOUNDATION_EXPORT Name : public Base {         \
    public:                                              \
        using Base::Base;                                \
        ~Name() override;                                \
        Name(const Name&) = default;                     \
        Name& operator=(const Name&) = default;          \
        const char* className() const noexcept override; \
    }
// NOLINTEND(bugprone-macro-parentheses)

FOUNDATION_EXCEPTION(RuntimeException, Exception);
FOUNDATION_EXCEPTION(DataFormatException, RuntimeException);
FOUNDATION_EXCEPTION(UTF8Exception, DataFormatException);
FOUNDATION_EXCEPTION(NullPointerException, RuntimeException);
FOUNDATION_EXCEPTION(RangeException, RuntimeException);
FOUNDATION_EXCEPTION(IOException, RuntimeException);

#undef FOUNDATION_EXCEPTION

/// The text of the information that is attached to an exception, empty where there is none. With
/// `withNames` each piece is preceded by what it is; pieces are separated by `separator`, a line
/// feed where it is empty.
FOUNDATION_EXPORT String getInfoDescription(const Exception& exception, bool withNames,
                                            StringView separator);

}  // namespace fn
