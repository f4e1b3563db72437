#include "common/IntText.h"

#include <cctype>
#include <climits>
#include <sstream>

namespace korvi {

int string2Int(const std::string& text) {
    std::istringstream in(text);
    int value = 0;
    in >> value;  // a failed extraction leaves 0 (or the clamped limit on overflow)
    return value;
}

void string2IntVector(const std::string& text, std::vector<int>& out) {
    std::istringstream in(text);
    int value = 0;
    while (in >> value) {
        out.push_back(value);
        while (in.peek() == ',' || in.peek() == ' ') in.get();
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
