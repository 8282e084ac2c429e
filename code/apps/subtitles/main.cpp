// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The command-line tool. Everything that can go wrong ends here, in one line and an exit status.

#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <string_view>

#include <gst/gst.h>

#include "foundation/exception.h"

#include "command-line.h"
#include "console.h"
#include "exit-status.h"
#include "plugins/gstreamer/subtitles-src.h"

namespace {

using tool::Console;
using tool::ExitStatus;

/// Plug-ins draw pictures. They play no part in reading subtitles, and looking for them takes a
/// while where nobody has before.
bool needsPlugins(int argc, const char* const* argv) {
    return argc > 1 && argv[1] == std::string_view("preview");
}

/// GStreamer gets no arguments, which it would take for its own.
void initializeGStreamer(bool withPlugins) {
    if (!withPlugins) {
        setenv("GST_REGISTRY_DISABLE", "yes", 1);
        setenv("GST_PLUGIN_SYSTEM_PATH_1_0", "", 1);
        setenv("GST_PLUGIN_PATH_1_0", "", 1);
    }
    gst_init(nullptr, nullptr);
    // Our own element is part of the program: it is there wherever the program is.
    if (withPlugins) {
        gst_element_register(nullptr, "subtitlesrc", GST_RANK_NONE, SUBTITLES_TYPE_SRC);
    }
}

ExitStatus run(Console& console, int argc, const char* const* argv) {
    try {
        const ExitStatus status = tool::runCommandLine(console, argc, argv);
        console.flush();
        return status;
    } catch (const tool::UsageError& error) {
        console.message(std::string(error.what()) + " (--help tells what there is)");
        return ExitStatus::Usage;
    } catch (const fn::Exception& exception) {
        console.message(exception.displayText());
    } catch (const tool::Failure& failure) {
        console.message(failure.what());
    } catch (const std::bad_alloc&) {
        console.message("not enough memory");
    } catch (const std::exception& exception) {
        console.message(exception.what());
    }
    return ExitStatus::Failed;
}

}  // namespace

int main(int argc, char** argv) {
    // A reader that has seen enough, or a limit on file sizes, is told by the failing write, so
    // that nothing ends half-way.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    initializeGStreamer(needsPlugins(argc, argv));
    Console console;
    try {
        return static_cast<int>(run(console, argc, argv));
    } catch (const Console::Closed&) {
        return static_cast<int>(ExitStatus::Done);
    } catch (const std::exception&) {
        // Standard output fails, and there was a message to tell already.
        return static_cast<int>(ExitStatus::Failed);
    }
}
