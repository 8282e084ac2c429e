// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The command-line tool. Everything that can go wrong ends here, in one line and an exit status.

#include <csignal>
#include <cstdlib>
#include <exception>
#include <new>

#include <gst/gst.h>

#include "foundation/exception.h"

#include "command-line.h"
#include "console.h"
#include "exit-status.h"

namespace {

using tool::Console;
using tool::ExitStatus;

/// GStreamer gets no arguments, which it would take for its own. Its plug-ins play no part in
/// reading subtitles, and looking for them takes a while where nobody has before.
void initializeGStreamer() {
    setenv("GST_REGISTRY_DISABLE", "yes", 1);
    setenv("GST_PLUGIN_SYSTEM_PATH_1_0", "", 1);
    setenv("GST_PLUGIN_PATH_1_0", "", 1);
    gst_init(nullptr, nullptr);
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
    initializeGStreamer();
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
