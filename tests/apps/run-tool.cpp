// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/apps/run-tool.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "tests/support/file-rights.h"

namespace test {

namespace {

/// The two ends of what carries one stream of the tool; -1 where it is closed.
struct Channel {
    int ours = -1;
    int its = -1;
};

Channel openChannel(bool isTerminal, unsigned short columns) {
    Channel channel;
    if (isTerminal) {
        termios raw{};
        cfmakeraw(&raw);
        winsize size{};
        size.ws_col = columns;
        if (openpty(&channel.ours, &channel.its, nullptr, &raw, &size) != 0) {
            throw std::runtime_error("no terminal to be had");
        }
    } else {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) {
            throw std::runtime_error("no pipe to be had");
        }
        channel = {ends[0], ends[1]};
    }
    fcntl(channel.ours, F_SETFD, FD_CLOEXEC);
    return channel;
}

void closeEnd(int& end) {
    if (end >= 0) {
        close(std::exchange(end, -1));
    }
}

[[noreturn]] void becomeTool(const std::vector<std::string>& arguments, const ToolSetup& setup,
                             const Channel& output, const Channel& error) {
    setenv("TERM", "xterm-256color", 1);
    unsetenv("NO_COLOR");
    unsetenv("COLORTERM");
    for (const auto& [name, value] : setup.environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    const int file =
        setup.outputFile.empty() ? output.its : open(setup.outputFile.c_str(), O_WRONLY);
    dup2(file, STDOUT_FILENO);
    dup2(error.its, STDERR_FILENO);
    if (!setup.folder.empty() && chdir(setup.folder.c_str()) != 0) {
        _exit(126);
    }
    if (setup.fileRightsHold) {
        letFileRightsHoldBehindExec();
    }
    std::vector<char*> argv{const_cast<char*>("subtitles")};
    for (const std::string& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    execv(SUBTITLES_TOOL, argv.data());
    _exit(127);
}

/// Takes what has come; closes the channel where nothing more will.
void drain(Channel& channel, std::string& text) {
    std::array<char, 65536> bytes{};
    const ssize_t count = read(channel.ours, bytes.data(), bytes.size());
    if (count > 0) {
        text.append(bytes.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
        closeEnd(channel.ours);  // a terminal ends in an error, a pipe in nothing
    }
}

void readBoth(Channel& output, Channel& error, ToolAnswer& answer) {
    while (output.ours >= 0 || error.ours >= 0) {
        std::array<pollfd, 2> waits{{{output.ours, POLLIN, 0}, {error.ours, POLLIN, 0}}};
        if (poll(waits.data(), waits.size(), -1) < 0) {
            continue;
        }
        if (waits[0].revents != 0) {
            drain(output, answer.output);
        }
        if (waits[1].revents != 0) {
            drain(error, answer.error);
        }
    }
}

}  // namespace

ToolAnswer runTool(const std::vector<std::string>& arguments, const ToolSetup& setup) {
    Channel output = openChannel(setup.outputIsTerminal, setup.columns);
    Channel error = openChannel(setup.errorIsTerminal, setup.columns);
    if (setup.closeOutput) {
        closeEnd(output.ours);
    }
    const pid_t child = fork();
    if (child == 0) {
        becomeTool(arguments, setup, output, error);
    }
    closeEnd(output.its);
    closeEnd(error.its);
    ToolAnswer answer;
    readBoth(output, error, answer);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    answer.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return answer;
}

}  // namespace test
