// A name from a tuning file in double quotes, for the tool's one-line messages: quotes,
// backslashes and control characters are escaped so that a name never breaks a line apart.
#pragma once

#include <cstdio>
#include <string>

namespace korvi::ctl {

inline std::string quoted(const std::string& text) {
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
        } else if (u < 0x20 || u == 0x7f) {
            char buf[8];
            snprintf(buf, sizeof buf, "\\x%02x", u);
            out += buf;
        } else {
            out += c;
        }
    }
    return out + "\"";
}

}  // namespace korvi::ctl
