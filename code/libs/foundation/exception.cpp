// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/exception.h"

namespace fn {

Exception::Exception(const String& message, StackTrace) : messageText(message) {}
Exception::~Exception() = default;

const char* Exception::what() const noexcept {
    return messageText.c_str();
}

#define FOUNDATION_EXCEPTION(Name)                 \
    Name::~Name() = default;                       \
    const char* Name::className() const noexcept { \
        return #Name;                              \
    }

FOUNDATION_EXCEPTION(RuntimeException)
FOUNDATION_EXCEPTION(DataFormatException)
FOUNDATION_EXCEPTION(UTF8Exception)
FOUNDATION_EXCEPTION(NullPointerException)
FOUNDATION_EXCEPTION(RangeException)
FOUNDATION_EXCEPTION(IOException)

#undef FOUNDATION_EXCEPTION

String getInfoDescription(const Exception& exception, bool withNames, StringView separator) {
    String description;
    for (const auto& [name, info] : exception.errorInfo().entries()) {
        if (!description.empty()) {
            description.append(separator.empty() ? StringView("\n") : separator);
        }
        if (withNames) {
            description.append(info->name()).append(": ");
        }
        description.append(info->text());
    }
    return description;
}

}  // namespace fn
