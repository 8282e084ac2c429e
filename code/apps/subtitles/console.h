// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace tool {

/// What the terminal at standard output can show; `None` is no terminal, or one of a person who
/// wants no colours.
enum class TextStyle { None, Colors256, TrueColor };

/// Where the tool's words go: results to standard output, messages and progress to standard error.
class Console {
public:
    /// Looks at the two streams and at TERM, COLORTERM and NO_COLOR.
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console() = default;

    /// Thrown where nobody reads standard output any more: the reader has seen enough, and that is
    /// no failure.
    struct Closed {};

    TextStyle textStyle() const { return style; }

    /// Writes to standard output, as it stands. Throws `Failure` where that is not possible, at the
    /// latest in `flush`.
    void write(std::string_view text);
    void flush();

    /// Tells the person one thing in one line, whatever the text holds.
    void message(std::string_view text);

    /// Shows the text at the place where the last one stood, where standard error is a terminal.
    /// It may be called for every file: the line changes ten times a second at most.
    void showProgress(std::string_view text);
    void clearProgress();

private:
    using Clock = std::chrono::steady_clock;

    TextStyle style;
    bool canShowProgress;
    bool progressIsShown = false;
    Clock::time_point nextProgress;
    std::string pending;  ///< Not written yet.
};

}  // namespace tool
