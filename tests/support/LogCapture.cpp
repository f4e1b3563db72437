#include "support/LogCapture.h"

#include <atomic>
#include <cstdio>

namespace korvi::test {

namespace {
// The capture lines go to. Swapped without holding a lock of ours while liblog's own lock may be
// taken (liblog calls the logger under its lock), so the two locks are never taken in both orders.
std::atomic<LogCapture*> sActive{nullptr};

char priorityLetter(int priority) {
    switch (priority) {
        case ANDROID_LOG_VERBOSE: return 'V';
        case ANDROID_LOG_DEBUG: return 'D';
        case ANDROID_LOG_INFO: return 'I';
        case ANDROID_LOG_WARN: return 'W';
        case ANDROID_LOG_ERROR: return 'E';
        case ANDROID_LOG_FATAL: return 'F';
        default: return '?';
    }
}
}  // namespace

LogCapture::LogCapture(bool echo) : mEcho(echo) {
    sActive.store(this);
    mOldPriority = __android_log_set_minimum_priority(ANDROID_LOG_VERBOSE);
    __android_log_set_logger(&LogCapture::logger);
}

LogCapture::~LogCapture() {
    __android_log_set_logger(__android_log_stderr_logger);
    __android_log_set_minimum_priority(mOldPriority);
    sActive.store(nullptr);
}

void LogCapture::logger(const struct __android_logger_data* data, const char* message) {
    LogCapture* active = sActive.load();
    if (active != nullptr) {
        active->record(data, message);
    } else {
        __android_log_stderr_logger(data, message);
    }
}

void LogCapture::record(const struct __android_logger_data* data, const char* message) {
    LogLine line{data->priority, data->tag ? data->tag : "", message ? message : ""};
    if (mEcho) {
        fprintf(stderr, "%c/%s: %s\n", priorityLetter(line.priority), line.tag.c_str(),
                line.message.c_str());
    }
    std::lock_guard<std::mutex> lock(mLock);
    mLines.push_back(std::move(line));
}

std::vector<LogLine> LogCapture::lines() const {
    std::lock_guard<std::mutex> lock(mLock);
    return mLines;
}

std::vector<LogLine> LogCapture::linesWithTag(const std::string& tag) const {
    std::vector<LogLine> result;
    for (const LogLine& line : lines()) {
        if (line.tag == tag) result.push_back(line);
    }
    return result;
}

bool LogCapture::contains(int priority, const std::string& tag, const std::string& message) const {
    return count(priority, tag, message) > 0;
}

bool LogCapture::containsText(const std::string& tag, const std::string& text) const {
    for (const LogLine& line : lines()) {
        if (line.tag == tag && line.message.find(text) != std::string::npos) return true;
    }
    return false;
}

size_t LogCapture::count(int priority, const std::string& tag, const std::string& message) const {
    size_t n = 0;
    for (const LogLine& line : lines()) {
        if (line.priority == priority && line.tag == tag && line.message == message) ++n;
    }
    return n;
}

void LogCapture::clear() {
    std::lock_guard<std::mutex> lock(mLock);
    mLines.clear();
}

std::string LogCapture::dump() const {
    std::string out;
    for (const LogLine& line : lines()) {
        out += priorityLetter(line.priority);
        out += '/' + line.tag + ": " + line.message + '\n';
    }
    return out;
}

}  // namespace korvi::test
