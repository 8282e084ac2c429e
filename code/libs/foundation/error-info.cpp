// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/error-info.h"

namespace fn {

namespace internal {

BaseErrorInfo::~BaseErrorInfo() = default;

ErrorHolder::ErrorHolder(const ErrorHolder& other) {
    *this = other;
}

ErrorHolder& ErrorHolder::operator=(const ErrorHolder& other) {
    if (this != &other) {
        infos.clear();
        for (const auto& [name, info] : other.infos) {
            infos[name].reset(info->clone());
        }
    }
    return *this;
}

}  // namespace internal

using DetailInfo = ErrorInfo<String, internal::DetailTag>;

DetailInfo* DetailInfo::clone() const {
    return new DetailInfo(*this);
}
DetailInfo::~ErrorInfo() = default;

}  // namespace fn
