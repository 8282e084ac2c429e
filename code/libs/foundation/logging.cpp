// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Categories and the sinks behind them.
//
// A log statement reads one atomic pointer and asks the sink for its threshold: where nobody
// listens, a trace in a parser's loop costs next to nothing. The lock is for making categories and
// exchanging sinks only.

#include "foundation/logging.h"

#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace fn::logging {

Message::Message(Priority messagePriority, StringView fileName, std::int32_t lineNumber,
                 StringView functionName, StringView signature, const void* loggingObject,
                 Tag objectTag)
    : time(std::chrono::system_clock::now()),
      priority(messagePriority),
      file(fileName),
      line(lineNumber),
      function(functionName),
      prettyFunction(signature),
      object(loggingObject),
      tag(std::move(objectTag)) {}

Message::~Message() = default;

Sink::~Sink() = default;

void Category::log(const Message& message) const {
    Sink* const sink = currentSink.load(std::memory_order_acquire);
    if (sink != nullptr && sink->wants(message.priority)) {
        sink->write(message);
    }
}

struct CategoryManager::State {
    /// Gives the category the sink that the factory in force makes for it. The sink stays alive.
    void connect(Category& category) {
        const SinkFactory& makeSink = factory != nullptr ? factory : defaultFactory;
        std::unique_ptr<Sink> sink =
            makeSink != nullptr ? makeSink(category.categoryName) : nullptr;
        category.currentSink.store(sink.get(), std::memory_order_release);
        if (sink != nullptr) {
            sinks.push_back(std::move(sink));
        }
    }

    void connectAll() {
        for (const auto& [name, category] : categories) {
            connect(*category);
        }
    }

    std::mutex mutex;
    std::map<String, std::unique_ptr<Category>> categories;
    std::vector<std::unique_ptr<Sink>> sinks;  ///< All that were ever in use.
    SinkFactory factory;
    SinkFactory defaultFactory;
};

CategoryManager::CategoryManager() : state(std::make_unique<State>()) {}
CategoryManager::~CategoryManager() = default;

CategoryManager& CategoryManager::instance() {
    // Never destroyed: static objects of a player may log while the process ends.
    static CategoryManager* const manager = new CategoryManager;
    return *manager;
}

Category* CategoryManager::getCategory(const String& name) {
    const std::lock_guard<std::mutex> lock(state->mutex);
    std::unique_ptr<Category>& category = state->categories[name];
    if (category == nullptr) {
        category = std::make_unique<Category>(name);
        state->connect(*category);
    }
    return category.get();
}

void CategoryManager::setSinkFactory(SinkFactory factory) {
    const std::lock_guard<std::mutex> lock(state->mutex);
    state->factory = std::move(factory);
    state->connectAll();
}

void CategoryManager::setDefaultSinkFactory(SinkFactory factory) {
    const std::lock_guard<std::mutex> lock(state->mutex);
    state->defaultFactory = std::move(factory);
    if (state->factory == nullptr) {
        state->connectAll();
    }
}

}  // namespace fn::logging
