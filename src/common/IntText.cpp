#include "common/IntText.h"

#include <cctype>
#include <climits>

namespace korvi {

namespace {

// The blanks a stream skips before a number in the classic locale.
bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Reads one number the way stream extraction into an int does, starting at pos: blanks, an
// optional sign, then at least one decimal digit. Returns false when there is no number (value
// 0) or when it does not fit an int (value clamped to INT_MAX or INT_MIN); pos ends after what
// was consumed. Works in place on the text: no stream, no allocation.
bool extractInt(const std::string& text, size_t& pos, int& value) {
    const size_t size = text.size();
    while (pos < size && isBlank(text[pos])) ++pos;
    bool negative = false;
    if (pos < size && (text[pos] == '+' || text[pos] == '-')) negative = text[pos++] == '-';
    if (pos >= size || !isDigit(text[pos])) {
        value = 0;
        return false;
    }
    // Accumulated as a magnitude; every digit is consumed even past the limit, as a stream does.
    constexpr long long kLimit = static_cast<long long>(INT_MAX) + 1;
    long long magnitude = 0;
    for (; pos < size && isDigit(text[pos]); ++pos) {
        if (magnitude <= kLimit) magnitude = magnitude * 10 + (text[pos] - '0');
    }
    const long long signedValue = negative ? -magnitude : magnitude;
    if (signedValue > INT_MAX) {
        value = INT_MAX;
        return false;
    }
    if (signedValue < INT_MIN) {
        value = INT_MIN;
        return false;
    }
    value = static_cast<int>(signedValue);
    return true;
}

}  // namespace

int string2Int(const std::string& text) {
    size_t pos = 0;
    int value = 0;
    extractInt(text, pos, value);  // a failed read leaves 0 (or the clamped limit on overflow)
    return value;
}

void string2IntVector(const std::string& text, std::vector<int>& out) {
    size_t pos = 0;
    int value = 0;
    while (extractInt(text, pos, value)) {
        out.push_back(value);
        while (pos < text.size() && (text[pos] == ',' || text[pos] == ' ')) ++pos;
    }
}

// Decimal like atoi (leading blanks, a sign, then digits; 0 without digits), but a number too
// large for an int is clamped instead of overflowing.
int decimal2Int(const std::string& text) {
    size_t i = 0;
    while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    long long value = 0;
    for (; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i) {
        value = value * 10 + (text[i] - '0');
        if (value > static_cast<long long>(INT_MAX) + 1) break;
    }
    if (negative) value = -value;
    if (value > INT_MAX) return INT_MAX;
    if (value < INT_MIN) return INT_MIN;
    return static_cast<int>(value);
}

std::string int2String(int value) {
    return std::to_string(value);
}

std::string intVector2String(const std::vector<int>& values) {
    std::string text;
    for (size_t i = 0; i < values.size(); ++i) {
        if (i > 0) text += ',';
        text += std::to_string(values[i]);
    }
    return text;
}

}  // namespace korvi
