#include "JsonWriter.h"

#include <cstdio>

namespace korvi::ctl {

std::string JsonWriter::escape(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        const unsigned char u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c == '\r') {
            out += "\\r";
        } else if (u < 0x20) {
            char buf[8];
            snprintf(buf, sizeof buf, "\\u%04x", u);
            out += buf;
        } else {
            out += c;  // UTF-8 passes through unchanged
        }
    }
    return out + "\"";
}

void JsonWriter::beforeValue() {
    if (mAfterKey) {
        mAfterKey = false;
        return;
    }
    if (mLevels.empty()) return;
    if (mLevels.back().count++ > 0) mOut += ',';
    mOut += '\n';
    mOut.append(mLevels.size() * 2, ' ');
}

void JsonWriter::open(char bracket, bool isArray) {
    beforeValue();
    mOut += bracket;
    mLevels.push_back({isArray, 0});
}

void JsonWriter::close(char bracket) {
    const bool empty = mLevels.back().count == 0;
    mLevels.pop_back();
    if (!empty) {
        mOut += '\n';
        mOut.append(mLevels.size() * 2, ' ');
    }
    mOut += bracket;
    if (mLevels.empty()) mOut += '\n';
}

void JsonWriter::beginObject() { open('{', false); }
void JsonWriter::endObject() { close('}'); }
void JsonWriter::beginArray() { open('[', true); }
void JsonWriter::endArray() { close(']'); }

void JsonWriter::key(const std::string& name) {
    beforeValue();
    mOut += escape(name) + ": ";
    mAfterKey = true;
}

void JsonWriter::value(const std::string& text) {
    beforeValue();
    mOut += escape(text);
}

void JsonWriter::value(long long number) {
    beforeValue();
    mOut += std::to_string(number);
}

void JsonWriter::value(bool flag) {
    beforeValue();
    mOut += flag ? "true" : "false";
}

void JsonWriter::value(const std::vector<int>& numbers) {
    beforeValue();
    mOut += '[';
    for (size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0) mOut += ", ";
        mOut += std::to_string(numbers[i]);
    }
    mOut += ']';
}

}  // namespace korvi::ctl
