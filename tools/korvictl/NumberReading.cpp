#include "NumberReading.h"

#include <cctype>
#include <climits>

#include "common/IntText.h"

namespace korvi::ctl {

NumberReading readNumbers(const std::string& text) {
    NumberReading reading;
    string2IntVector(text, reading.numbers);
    size_t i = 0;
    const size_t n = text.size();
    auto isBlank = [&](size_t k) { return text[k] == ' ' || text[k] == '\t' || text[k] == '\n'; };
    while (i < n && isBlank(i)) ++i;
    while (i < n) {
        const size_t start = i;
        if (text[i] == '-' || text[i] == '+') ++i;
        const size_t digits = i;
        while (i < n && isdigit(static_cast<unsigned char>(text[i]))) ++i;
        if (i == digits) {
            reading.ignoredRest = text.substr(start);
            return reading;
        }
        const long long value = i - digits > 11 ? LLONG_MAX : std::stoll(text.substr(start, i - start));
        if (value > INT_MAX || value < INT_MIN) {
            reading.overflow = text.substr(start, i - start);
            return reading;
        }
        int commas = 0;
        while (i < n && (text[i] == ',' || text[i] == ' ')) commas += text[i++] == ',';
        if (commas > 1) reading.emptyItem = true;
        if (i < n && commas == 0 && !isdigit(static_cast<unsigned char>(text[i])) &&
            text[i] != '-' && text[i] != '+') {
            reading.ignoredRest = text.substr(i);
            return reading;
        }
    }
    return reading;
}

std::string listText(const std::vector<int>& numbers) {
    if (numbers.empty()) return "nothing";
    std::string out;
    for (size_t i = 0; i < numbers.size(); ++i) out += (i > 0 ? "," : "") + std::to_string(numbers[i]);
    return out;
}

}  // namespace korvi::ctl
