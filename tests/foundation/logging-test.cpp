// SPDX-License-Identifier: LGPL-2.1-or-later

#include "foundation/logging.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/exception.h"
#include "foundation/logging-message.h"

#include "tests/support/log-recorder.h"

namespace {

using fn::logging::Category;
using fn::logging::CategoryManager;
using fn::logging::Message;
using fn::logging::Tag;

/// Logs in the way that the library's classes do.
class Speaker {
public:
    static Category* _fn_getLoggingCategoryStatic() {
        static Category* const category = CategoryManager::instance().getCategory("test.speaker");
        return category;
    }
    static Tag _fn_getLoggingTag() { return Tag{"", 0}; }

    void fail(const fn::Exception& exception) const {
        FN_LOG(Error, Formatter)("Error while parsing: {}", exception);
    }
    void trace(const char* first, const char* second) const {
        FN_LOG(Trace, FormatterF)("%s to %s", first, second);
    }
    void number(double& value, const char* unit) const {
        FN_LOG(Trace, FormatterF)("%f %s", value, unit);
    }
    void color(unsigned char red, unsigned char green, unsigned char blue, unsigned char alpha) {
        FN_LOG(Trace, FormatterF)("%i %i %i %i", red, green, blue, alpha);
    }
    void plain() const { FN_LOG(Error, FormatterF)("will try to skip to next property."); }
};

/// Counts how often its text is made.
class CountingMessage final : public Message {
public:
    CountingMessage(Priority level, int& texts)
        : Message(level, "file.cpp", 1, "f", "void f()", nullptr, Tag{}), _texts(texts) {}
    fn::String text() const override {
        ++_texts;
        return "text";
    }
    CountingMessage* clone() const override { return new CountingMessage(*this); }

private:
    int& _texts;
};

TEST(LoggingCategory, IsMadeOnceAndKeepsItsName) {
    CategoryManager& manager = CategoryManager::instance();
    Category* const category = manager.getCategory("test.once");
    EXPECT_EQ(category, manager.getCategory("test.once"));
    EXPECT_NE(category, manager.getCategory("test.other"));
    EXPECT_EQ(category->name(), "test.once");
}

TEST(LoggingCategory, WithoutSinkMakesNoText) {
    int texts = 0;
    Category("test.alone").log(CountingMessage(Message::Priority::Error, texts));
    EXPECT_EQ(texts, 0);
}

TEST(LoggingCategory, BelowThresholdMakesNoText) {
    const test::LogRecorder recorder(Message::Priority::Error);
    int texts = 0;
    Category* const category = CategoryManager::instance().getCategory("test.threshold");
    category->log(CountingMessage(Message::Priority::Trace, texts));
    EXPECT_EQ(texts, 0);
    category->log(CountingMessage(Message::Priority::Error, texts));
    EXPECT_EQ(texts, 1);
    EXPECT_EQ(recorder.lines(), "test.threshold 2: text\n");
}

TEST(LoggingCategory, MadeBeforeTheSinkReceivesIt) {
    Category* const category = CategoryManager::instance().getCategory("test.early");
    const test::LogRecorder recorder;
    int texts = 0;
    category->log(CountingMessage(Message::Priority::Trace, texts));
    EXPECT_EQ(recorder.lines(), "test.early 5: text\n");
}

TEST(LoggingManager, ProgramsFactoryGoesBeforeTheLibrarysDefault) {
    CategoryManager& manager = CategoryManager::instance();
    std::vector<std::string> asked;
    {
        const test::LogRecorder recorder;
        manager.setDefaultSinkFactory([&](const fn::String& name) {
            asked.push_back(name);
            return nullptr;
        });
        manager.getCategory("test.default");
        EXPECT_TRUE(asked.empty());
        int texts = 0;
        manager.getCategory("test.default")->log(CountingMessage(Message::Priority::Error, texts));
        EXPECT_EQ(recorder.lines(), "test.default 2: text\n");
    }
    EXPECT_NE(std::find(asked.begin(), asked.end(), "test.default"), asked.end());
    manager.setDefaultSinkFactory(nullptr);
}

TEST(LogStatement, PrintsExceptionWithItsDetails) {
    const test::LogRecorder recorder;
    fn::RangeException exception("does not fit");
    Speaker().fail(exception);
    exception << fn::ErrorInfo<fn::String, fn::internal::DetailTag>("the value");
    Speaker().fail(exception);
    const fn::String details = fn::getInfoDescription(exception, true, {});
    EXPECT_EQ(recorder.lines(),
              "test.speaker 2: Error while parsing: does not fit\n"
              "test.speaker 2: Error while parsing: does not fit\n" +
                  details + "\n");
}

TEST(LogStatement, FormatsLikePrintf) {
    const test::LogRecorder recorder;
    double value = 1.5;
    Speaker().trace("red", "blue");
    Speaker().number(value, "em");
    Speaker().color(1, 20, 255, 0);
    Speaker().plain();
    EXPECT_EQ(recorder.lines(),
              "test.speaker 5: red to blue\n"
              "test.speaker 5: 1.500000 em\n"
              "test.speaker 5: 1 20 255 0\n"
              "test.speaker 2: will try to skip to next property.\n");
    EXPECT_EQ(recorder.records().at(0).function, "trace");
}

TEST(LogMessage, CarriesWhereItWasMade) {
    const auto before = std::chrono::system_clock::now();
    const int object = 0;
    const fn::logging::internal::MessageImpl<fn::logging::internal::Formatter, int> message(
        Message::Priority::Error, "a.cpp", 7, "f", "void f(int)", &object, Tag{"tag", 3}, "n={}",
        5);
    EXPECT_LE(before, message.time);
    EXPECT_EQ(message.file, "a.cpp");
    EXPECT_EQ(message.line, 7);
    EXPECT_EQ(message.function, "f");
    EXPECT_EQ(message.prettyFunction, "void f(int)");
    EXPECT_EQ(message.object, &object);
    EXPECT_EQ(message.tag.name, "tag");
    EXPECT_EQ(message.tag.number, 3);
    EXPECT_EQ(message.text(), "n=5");
}

TEST(LogMessage, CloneOwnsItsFormatAndRefersToItsArguments) {
    int value = 1;
    const fn::logging::internal::MessageImpl<fn::logging::internal::Formatter, int&> message(
        Message::Priority::Trace, "a.cpp", 1, "f", "void f()", nullptr, Tag{}, "{}", value);
    const std::unique_ptr<Message> clone(message.clone());
    value = 2;
    EXPECT_EQ(clone->text(), "2");
    EXPECT_EQ(clone->priority, Message::Priority::Trace);
}

TEST(LoggingThreads, CategoriesAndSinksMayChangeWhileOthersLog) {
    constexpr int threadCount = 4;
    constexpr int messageCount = 500;
    const test::LogRecorder recorder;
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([] {
            int texts = 0;
            for (int k = 0; k < messageCount; ++k) {
                CategoryManager::instance()
                    .getCategory("test.shared")
                    ->log(CountingMessage(Message::Priority::Error, texts));
            }
        });
    }
    for (int k = 0; k < 20; ++k) {
        CategoryManager::instance().setDefaultSinkFactory(nullptr);
        CategoryManager::instance().getCategory(fn::String("test.shared.") + std::to_string(k));
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(recorder.records().size(), std::size_t{threadCount} * messageCount);
}

}  // namespace
