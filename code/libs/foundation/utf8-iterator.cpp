// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/utf8-iterator.h"

#include <stdexcept>

#include "foundation/exception.h"
#include "foundation/utf8.h"

namespace fn {

namespace {

utf8::Sequence decodeOrThrow(const char* position, const char* end) {
    const utf8::Sequence sequence = utf8::decode(position, end);
    if (sequence.size == 0) {
        throw UTF8Exception("The text is not valid UTF-8");
    }
    return sequence;
}

}  // namespace

UTF8Iterator::UTF8Iterator(const char* position, const char* rangeStart, const char* rangeEnd)
    : current(position), first(rangeStart), last(rangeEnd) {
    update();
}

void UTF8Iterator::update() const {
    decoded = current == last ? 0 : decodeOrThrow(current, last).codePoint;
}

UTF8Iterator& UTF8Iterator::operator++() {
    if (current != last) {
        current += decodeOrThrow(current, last).size;
    }
    return *this;
}

bool UTF8Iterator::operator==(const UTF8Iterator& other) const {
    if (first != other.first || last != other.last) {
        throw std::logic_error("Comparing utf-8 iterators defined with different ranges");
    }
    return current == other.current;
}

}  // namespace fn
