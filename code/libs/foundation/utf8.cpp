// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Decoding UTF-8 as Unicode's table of well-formed sequences tells it: the first byte says how many
// follow and narrows the range of the second, all others lie between 80 and BF.

#include "foundation/utf8.h"

#include <cstring>

#include "foundation/unicode.h"

namespace fn::utf8 {

namespace {

/// What a first byte promises. `size` is 0 for a byte that begins no sequence.
struct Lead {
    std::size_t size;
    unsigned char secondLow;
    unsigned char secondHigh;
};

Lead leadOf(unsigned char byte) {
    if (byte < 0x80) {
        return {1, 0, 0};
    }
    if (byte < 0xC2 || byte > 0xF4) {
        return {0, 0, 0};  // Continuation bytes, overlong forms, numbers beyond Unicode.
    }
    if (byte < 0xE0) {
        return {2, 0x80, 0xBF};
    }
    if (byte < 0xF0) {
        // E0 would be overlong below A0, ED holds the surrogates from A0 on.
        return {3, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    }
    return {4, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
            static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
}

unsigned char byteAt(const char* position) {
    return static_cast<unsigned char>(*position);
}

/// How many bytes from `begin` agree with the promise of their first byte, which is a good one.
std::size_t agreeing(const Lead& lead, const char* begin, const char* end) {
    const auto available = static_cast<std::size_t>(end - begin);
    std::size_t count = 1;
    while (count < lead.size && count < available) {
        const unsigned char byte = byteAt(begin + count);
        const unsigned char low = count == 1 ? lead.secondLow : 0x80;
        const unsigned char high = count == 1 ? lead.secondHigh : 0xBF;
        if (byte < low || byte > high) {
            break;
        }
        ++count;
    }
    return count;
}

/// The first byte of the range that is not ASCII.
const char* skipASCII(const char* begin, const char* end) {
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    while (end - begin >= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, begin, sizeof word);
        if ((word & highBits) != 0) {
            break;
        }
        begin += 8;
    }
    while (begin != end && byteAt(begin) < 0x80) {
        ++begin;
    }
    return begin;
}

/// The start of the last code point of a well-formed text.
const char* lastSequence(StringView text) {
    const char* position = text.data() + text.size() - 1;
    while ((static_cast<unsigned char>(*position) & 0xC0U) == 0x80U) {
        --position;
    }
    return position;
}

/// An ASCII byte that is no white space, as most lines begin and end with.
bool isASCIIGraph(char byte) {
    return byte > ' ';
}

bool isSpaceAt(const char* position, const char* end) {
    return Unicode::isBreakingSpace(static_cast<int>(decode(position, end).codePoint));
}

}  // namespace

Sequence decode(const char* begin, const char* end) {
    if (begin == end) {
        return {};
    }
    const Lead lead = leadOf(byteAt(begin));
    if (lead.size == 1) {
        return {byteAt(begin), 1};
    }
    if (lead.size == 0 || agreeing(lead, begin, end) != lead.size) {
        return {};
    }
    // The first byte of a longer sequence carries 7 - size bits, each other one six.
    std::uint32_t codePoint = byteAt(begin) & (0x7FU >> lead.size);
    for (std::size_t i = 1; i < lead.size; ++i) {
        codePoint = (codePoint << 6U) | (byteAt(begin + i) & 0x3FU);
    }
    return {codePoint, lead.size};
}

const char* findMalformed(const char* begin, const char* end) {
    while (true) {
        begin = skipASCII(begin, end);
        if (begin == end) {
            return end;
        }
        const Lead lead = leadOf(byteAt(begin));
        if (lead.size == 0 || agreeing(lead, begin, end) != lead.size) {
            return begin;
        }
        begin += lead.size;
    }
}

StringView trimmed(StringView text) {
    if (!text.empty() && isASCIIGraph(text.front()) && isASCIIGraph(text.back())) {
        return text;
    }
    while (!text.empty() && isSpaceAt(text.data(), text.data() + text.size())) {
        text.remove_prefix(decode(text.data(), text.data() + text.size()).size);
    }
    while (!text.empty()) {
        const char* const last = lastSequence(text);
        if (!isSpaceAt(last, text.data() + text.size())) {
            break;
        }
        text.remove_suffix(static_cast<std::size_t>(text.data() + text.size() - last));
    }
    return text;
}

std::size_t incompleteTail(StringView text) {
    const char* const end = text.data() + text.size();
    for (std::size_t back = 1; back <= 3 && back <= text.size(); ++back) {
        const Lead lead = leadOf(byteAt(end - back));
        if (lead.size > back && agreeing(lead, end - back, end) == back) {
            return back;
        }
    }
    return 0;
}

std::size_t malformedSize(const char* begin, const char* end) {
    const Lead lead = leadOf(byteAt(begin));
    return lead.size == 0 ? 1 : agreeing(lead, begin, end);
}

void append(std::string& text, std::uint32_t codePoint) {
    if (codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint < 0xE000)) {
        codePoint = 0xFFFD;
    }
    const auto continuation = [&](unsigned shift) {
        text += static_cast<char>(0x80U | ((codePoint >> shift) & 0x3FU));
    };
    if (codePoint < 0x80) {
        text += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        text += static_cast<char>(0xC0U | (codePoint >> 6U));
        continuation(0);
    } else if (codePoint < 0x10000) {
        text += static_cast<char>(0xE0U | (codePoint >> 12U));
        continuation(6);
        continuation(0);
    } else {
        text += static_cast<char>(0xF0U | (codePoint >> 18U));
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

}  // namespace fn::utf8
