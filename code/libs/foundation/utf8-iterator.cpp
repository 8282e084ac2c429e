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
    : _position(position), _rangeStart(rangeStart), _rangeEnd(rangeEnd) {
    update();
}

void UTF8Iterator::update() const {
    _codePoint = _position == _rangeEnd ? 0 : decodeOrThrow(_position, _rangeEnd).codePoint;
}

UTF8Iterator& UTF8Iterator::operator++() {
    if (_position != _rangeEnd) {
        _position += decodeOrThrow(_position, _rangeEnd).size;
    }
    return *this;
}

bool UTF8Iterator::operator==(const UTF8Iterator& other) const {
    if (_rangeStart != other._rangeStart || _rangeEnd != other._rangeEnd) {
        throw std::logic_error("Comparing utf-8 iterators defined with different ranges");
    }
    return _position == other._position;
}

}  // namespace fn
