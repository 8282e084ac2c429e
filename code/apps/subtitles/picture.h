// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tool {

/// A picture of red, green and blue bytes.
struct Picture {
    int width = 0;
    int height = 0;
    std::string pixels;  ///< The rows from the top, each of `stride` bytes.
};

/// The bytes of a row: three a pixel, up to a multiple of four.
std::size_t stride(int width);

/// A picture of one colour, a grey from 0 to 255.
Picture plainPicture(int width, int height, unsigned char grey);

/// Pictures of one size side by side in rows, with a margin around each.
Picture contactSheet(const std::vector<Picture>& pictures);

/// The picture as a file. Throws `Failure` where that is not possible.
std::string encodePNG(const Picture& picture);

}  // namespace tool
