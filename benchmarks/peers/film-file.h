// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <string>

namespace peers {

enum class Format { SRT, MicroDVD, ASS, SMI };

constexpr Format allFormats[] = {Format::SRT, Format::MicroDVD, Format::ASS, Format::SMI};

const char* nameOf(Format format);

/// A file as films have it, of `size` bytes or a few less: whole cues of one or two lines, one in
/// five with mark-up, in a language with accents, two seconds apart. UTF-8.
std::string filmFile(Format format, std::size_t size);

/// The same in an encoding of single bytes, in a language that is written in it.
std::string filmFileIn(const char* encoding, Format format, std::size_t size);

}  // namespace peers
