// SPDX-License-Identifier: LGPL-2.1-or-later

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/logging.h"

namespace test {

/// Records what all categories log while it lives, and then lets the messages go where they went
/// before. One at a time; logging may happen on any thread.
class LogRecorder {
public:
    /// Keeps messages up to this priority: `Error` alone, or traces as well.
    explicit LogRecorder(
        fn::logging::Message::Priority threshold = fn::logging::Message::Priority::Trace);
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;
    ~LogRecorder();

    struct Record {
        std::string category;
        int priority = 0;
        std::string text;
        std::string function;
    };

    std::vector<Record> records() const;

    /// The messages as lines "category 2: text", each with a line feed.
    std::string lines() const;

private:
    struct Store;

    std::shared_ptr<Store> _store;
};

}  // namespace test
