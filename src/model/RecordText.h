// Building blocks of the records' text forms: "key=value" lines, each ended by a newline.
#pragma once

#include <cstdint>
#include <string>

#include "model/Endpoint.h"

namespace korvi::recordtext {

inline void line(std::string& out, const char* key, const std::string& value) {
    out += key;
    out += '=';
    out += value;
    out += '\n';
}

inline void line(std::string& out, const char* key, int64_t value) {
    line(out, key, std::to_string(value));
}

inline void line(std::string& out, const char* key, int value) {
    line(out, key, std::to_string(value));
}

inline void line(std::string& out, const char* key, bool value) {
    line(out, key, std::string(value ? "true" : "false"));
}

inline void line(std::string& out, const char* key, Endpoint value) {
    line(out, key, std::string(endpointName(value)));
}

}  // namespace korvi::recordtext
