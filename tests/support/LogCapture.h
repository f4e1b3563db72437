// Records every log line written while it lives: lowers liblog's minimum priority so debug and
// verbose lines are kept, routes lines through a logger of its own, and restores both on
// destruction. One capture at a time.
//
//   LogCapture logs;
//   doSomething();
//   EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "TagIterator", "It's empty in node stack!"));
#pragma once

#include <android/log.h>

#include <mutex>
#include <string>
#include <vector>

namespace korvi::test {

struct LogLine {
    int priority;
    std::string tag;
    std::string message;
};

class LogCapture {
public:
    // echo: also print each line to stderr, which helps when a test fails.
    explicit LogCapture(bool echo = false);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    std::vector<LogLine> lines() const;
    // Lines of one tag, in order.
    std::vector<LogLine> linesWithTag(const std::string& tag) const;
    // True when a line with this priority and tag has exactly this message.
    bool contains(int priority, const std::string& tag, const std::string& message) const;
    // True when a line with this tag has a message containing text (any priority).
    bool containsText(const std::string& tag, const std::string& text) const;
    // Number of lines with this exact priority, tag and message.
    size_t count(int priority, const std::string& tag, const std::string& message) const;
    void clear();
    // All lines as "P/tag: message", one per line; handy in failure messages.
    std::string dump() const;

private:
    static void logger(const struct __android_logger_data* data, const char* message);
    void record(const struct __android_logger_data* data, const char* message);

    mutable std::mutex mLock;
    std::vector<LogLine> mLines;
    bool mEcho;
    int mOldPriority;
};

}  // namespace korvi::test
