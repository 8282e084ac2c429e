// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <map>
#include <memory>
#include <typeinfo>
#include <utility>

#include "foundation/export.h"
#include "foundation/string.h"

namespace fn {

namespace internal {

/// Marks an `ErrorInfo` that describes the value at fault.
struct DetailTag {};

/// One piece of information that travels with an exception.
class FOUNDATION_EXPORT BaseErrorInfo {
public:
    /// A copy that the caller owns.
    virtual BaseErrorInfo* clone() const = 0;
    virtual ~BaseErrorInfo();

    /// What the piece is, and the piece, for people.
    virtual const char* name() const noexcept = 0;
    virtual String text() const = 0;

protected:
    BaseErrorInfo() = default;
    BaseErrorInfo(const BaseErrorInfo&) = default;
    BaseErrorInfo& operator=(const BaseErrorInfo&) = default;
};

/// The information of one exception, by the run-time name of its type. Copies are deep.
class FOUNDATION_EXPORT ErrorHolder {
public:
    ErrorHolder() = default;
    ErrorHolder(const ErrorHolder& other);
    ErrorHolder& operator=(const ErrorHolder& other);
    ~ErrorHolder() = default;

    /// Stores a copy of `info`; one of the same type that is there already is replaced.
    template <class Info>
    void set(const Info& info) {
        infos[String(typeid(Info).name())].reset(info.clone());
    }

    using Entries = std::map<String, std::unique_ptr<BaseErrorInfo>>;
    const Entries& entries() const { return infos; }

private:
    Entries infos;
};

}  // namespace internal

/// One value that travels with an exception; `Tag` says what it means.
template <class Value, class Tag>
class ErrorInfo;

template <>
class FOUNDATION_EXPORT ErrorInfo<String, internal::DetailTag> : public internal::BaseErrorInfo {
public:
    explicit ErrorInfo(String value) : content(std::move(value)) {}

    ErrorInfo* clone() const override;
    ~ErrorInfo() override;
    const char* name() const noexcept override { return "Detail"; }
    String text() const override { return content; }

    ErrorInfo(const ErrorInfo&) = default;
    ErrorInfo& operator=(const ErrorInfo&) = default;

private:
    String content;
};

}  // namespace fn
