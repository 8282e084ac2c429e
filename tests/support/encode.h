// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <string>

namespace test {

/// The UTF-8 text in the named encoding. Throws `std::runtime_error` where the encoding is unknown
/// or cannot say the text.
std::string encode(const std::string& text, const std::string& encoding);

/// The bytes of a file below tests/data. Throws `std::runtime_error` where it cannot be read.
std::string readTestData(const std::string& name);

/// The folder that holds the project's sources, without a slash at its end.
std::string sourceFolder();

}  // namespace test
