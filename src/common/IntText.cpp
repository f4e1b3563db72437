#include "common/IntText.h"

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
