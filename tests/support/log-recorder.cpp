// SPDX-License-Identifier: LGPL-2.1-or-later

#include "tests/support/log-recorder.h"

#include <mutex>
#include <utility>

namespace test {

using fn::logging::CategoryManager;
using fn::logging::Message;

struct LogRecorder::Store {
    std::mutex mutex;
    std::vector<Record> records;
};

namespace {

/// Shares the store with the recorder: sinks stay alive for the rest of the process.
template <class Store>
class RecordingSink : public fn::logging::Sink {
public:
    RecordingSink(std::string category, Message::Priority threshold, std::shared_ptr<Store> store)
        : _category(std::move(category)), _threshold(threshold), _store(std::move(store)) {}

    bool wants(Message::Priority priority) const override { return priority <= _threshold; }

    void write(const Message& message) override {
        const std::lock_guard<std::mutex> lock(_store->mutex);
        _store->records.push_back({_category, static_cast<int>(message.priority), message.text(),
                                   std::string(message.function)});
    }

private:
    std::string _category;
    Message::Priority _threshold;
    std::shared_ptr<Store> _store;
};

}  // namespace

LogRecorder::LogRecorder(Message::Priority threshold) : _store(std::make_shared<Store>()) {
    CategoryManager::instance().setSinkFactory([threshold, store = _store](const auto& category) {
        return std::make_unique<RecordingSink<Store>>(category, threshold, store);
    });
}

LogRecorder::~LogRecorder() {
    CategoryManager::instance().setSinkFactory(nullptr);
}

std::vector<LogRecorder::Record> LogRecorder::records() const {
    const std::lock_guard<std::mutex> lock(_store->mutex);
    return _store->records;
}

std::string LogRecorder::lines() const {
    std::string lines;
    for (const Record& record : records()) {
        lines +=
            record.category + " " + std::to_string(record.priority) + ": " + record.text + "\n";
    }
    return lines;
}

}  // namespace test
