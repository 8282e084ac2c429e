// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Standard output and standard error, by plain system calls: so every failure to write is seen, a
// full disk as well as a reader that has gone.

#include "console.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <sys/ioctl.h>
#include <unistd.h>

#include "exit-status.h"
#include "visible-text.h"

namespace tool {

namespace {

constexpr std::size_t bufferSize = 64 * 1024;
constexpr std::chrono::milliseconds progressInterval{100};
constexpr std::string_view eraseLine = "\r\x1B[K";

std::string_view environment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

bool canMoveCursor(int descriptor) {
    const std::string_view terminal = environment("TERM");
    return isatty(descriptor) != 0 && !terminal.empty() && terminal != "dumb";
}

TextStyle styleOf(int descriptor) {
    if (!canMoveCursor(descriptor) || std::getenv("NO_COLOR") != nullptr) {
        return TextStyle::None;
    }
    const std::string_view depth = environment("COLORTERM");
    return depth == "truecolor" || depth == "24bit" ? TextStyle::TrueColor : TextStyle::Colors256;
}

/// The start of the text that one line of the terminal holds: a longer line would go on to the
/// next, where it stays when the first is erased.
std::string clippedToTerminal(std::string line, int descriptor) {
    winsize size{};
    if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return line;
    }
    return clippedToWidth(std::move(line), size.ws_col - 1U);
}

/// 0, or the error that stopped the writing.
int writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return 0;
}

}  // namespace

Console::Console() : style(styleOf(STDOUT_FILENO)), canShowProgress(canMoveCursor(STDERR_FILENO)) {}

void Console::write(std::string_view text) {
    clearProgress();
    pending.append(text);
    if (pending.size() >= bufferSize) {
        flush();
    }
}

void Console::flush() {
    const std::string output = std::exchange(pending, {});
    const int error = writeAll(STDOUT_FILENO, output);
    if (error == EPIPE) {
        throw Closed{};
    }
    if (error != 0) {
        throw Failure(std::string("standard output: ") + std::strerror(error));
    }
}

void Console::message(std::string_view text) {
    clearProgress();
    flush();
    // There is nobody left to tell where this fails.
    writeAll(STDERR_FILENO, "subtitles: " + visibleLine(text) + "\n");
}

void Console::showProgress(std::string_view text) {
    const Clock::time_point now = Clock::now();
    if (!canShowProgress || now < nextProgress) {
        return;
    }
    nextProgress = now + progressInterval;
    progressIsShown = true;
    writeAll(STDERR_FILENO,
             std::string(eraseLine) + clippedToTerminal(visibleLine(text), STDERR_FILENO));
}

void Console::clearProgress() {
    if (std::exchange(progressIsShown, false)) {
        writeAll(STDERR_FILENO, eraseLine);
    }
}

}  // namespace tool
