// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Texts in the encodings that files come in, made from UTF-8 so that a reader can see what they
// say.

#include "tests/support/encode.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <iconv.h>

namespace test {

std::string encode(const std::string& text, const std::string& encoding) {
    const iconv_t converter = iconv_open(encoding.c_str(), "UTF-8");
    // Four bytes for each byte, and room for a byte order mark: more than any encoding needs.
    std::string result(text.size() * 4 + 16, '\0');
    std::string input = text;
    char* from = input.data();
    std::size_t fromSize = input.size();
    char* to = result.data();
    std::size_t toSize = result.size();
    const std::size_t converted = iconv(converter, &from, &fromSize, &to, &toSize);
    iconv(converter, nullptr, nullptr, &to, &toSize);
    iconv_close(converter);
    // A converter that could not be opened converts nothing either.
    if (converted == static_cast<std::size_t>(-1)) {
        throw std::runtime_error("cannot say this in " + encoding);
    }
    result.resize(result.size() - toSize);
    return result;
}

std::string sourceFolder() {
    const char* const data = std::getenv("SUBTITLES_TEST_DATA");
    return data != nullptr ? std::string(data) + "/../.." : std::string(".");
}

std::string readTestData(const std::string& name) {
    const std::string path = sourceFolder() + "/tests/data/" + name;
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot read " + path);
    }
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

}  // namespace test
