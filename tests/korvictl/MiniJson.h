// A strict little JSON reader for checking the tool's --json output: it accepts exactly the JSON
// grammar (objects, arrays, strings with escapes, integers, true, false, null) and fails on
// anything else, so a malformed document cannot pass a test.
#pragma once

#include <cctype>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace korvi::test {

struct Json {
    enum Kind { NUL, BOOL, NUMBER, STRING, ARRAY, OBJECT } kind = NUL;
    bool flag = false;
    long long number = 0;
    std::string text;
    std::vector<Json> items;
    std::map<std::string, Json> members;

    const Json& operator[](const std::string& name) const {
        const auto it = members.find(name);
        if (kind != OBJECT || it == members.end()) throw std::runtime_error("no member " + name);
        return it->second;
    }
    const Json& operator[](size_t i) const {
        if (kind != ARRAY || i >= items.size()) throw std::runtime_error("no item");
        return items[i];
    }
    std::vector<int> ints() const {
        std::vector<int> out;
        for (const Json& j : items) out.push_back(static_cast<int>(j.number));
        return out;
    }

    static Json parse(const std::string& doc) {
        size_t pos = 0;
        Json value = parseValue(doc, pos);
        skipBlanks(doc, pos);
        if (pos != doc.size()) fail(pos, "trailing text");
        return value;
    }

private:
    [[noreturn]] static void fail(size_t pos, const std::string& why) {
        throw std::runtime_error("JSON error at " + std::to_string(pos) + ": " + why);
    }
    static void skipBlanks(const std::string& s, size_t& pos) {
        while (pos < s.size() && (s[pos] == ' ' || s[pos] == '\n' || s[pos] == '\t' || s[pos] == '\r')) {
            ++pos;
        }
    }
    static void expect(const std::string& s, size_t& pos, const char* word) {
        const std::string w(word);
        if (s.compare(pos, w.size(), w) != 0) fail(pos, "expected " + w);
        pos += w.size();
    }
    static std::string parseString(const std::string& s, size_t& pos) {
        expect(s, pos, "\"");
        std::string out;
        while (true) {
            if (pos >= s.size()) fail(pos, "unterminated string");
            const char c = s[pos++];
            if (c == '"') return out;
            if (static_cast<unsigned char>(c) < 0x20) fail(pos, "control character in string");
            if (c != '\\') {
                out += c;
                continue;
            }
            if (pos >= s.size()) fail(pos, "bad escape");
            const char e = s[pos++];
            switch (e) {
                case '"': out += '"'; break;
                case '\\': out += '\\'; break;
                case '/': out += '/'; break;
                case 'n': out += '\n'; break;
                case 't': out += '\t'; break;
                case 'r': out += '\r'; break;
                case 'b': out += '\b'; break;
                case 'f': out += '\f'; break;
                case 'u': {
                    if (pos + 4 > s.size()) fail(pos, "bad \\u escape");
                    const int code = std::stoi(s.substr(pos, 4), nullptr, 16);
                    pos += 4;
                    if (code >= 0x80) fail(pos, "only ASCII \\u escapes expected");
                    out += static_cast<char>(code);
                    break;
                }
                default: fail(pos, "bad escape");
            }
        }
    }
    static Json parseValue(const std::string& s, size_t& pos) {
        skipBlanks(s, pos);
        if (pos >= s.size()) fail(pos, "value expected");
        Json v;
        const char c = s[pos];
        if (c == '{') {
            v.kind = OBJECT;
            ++pos;
            skipBlanks(s, pos);
            if (pos < s.size() && s[pos] == '}') {
                ++pos;
                return v;
            }
            while (true) {
                skipBlanks(s, pos);
                const std::string name = parseString(s, pos);
                skipBlanks(s, pos);
                expect(s, pos, ":");
                if (!v.members.emplace(name, parseValue(s, pos)).second) fail(pos, "repeated member");
                skipBlanks(s, pos);
                if (pos < s.size() && s[pos] == ',') {
                    ++pos;
                    continue;
                }
                expect(s, pos, "}");
                return v;
            }
        }
        if (c == '[') {
            v.kind = ARRAY;
            ++pos;
            skipBlanks(s, pos);
            if (pos < s.size() && s[pos] == ']') {
                ++pos;
                return v;
            }
            while (true) {
                v.items.push_back(parseValue(s, pos));
                skipBlanks(s, pos);
                if (pos < s.size() && s[pos] == ',') {
                    ++pos;
                    continue;
                }
                expect(s, pos, "]");
                return v;
            }
        }
        if (c == '"') {
            v.kind = STRING;
            v.text = parseString(s, pos);
            return v;
        }
        if (c == 't' || c == 'f') {
            v.kind = BOOL;
            v.flag = c == 't';
            expect(s, pos, v.flag ? "true" : "false");
            return v;
        }
        if (c == 'n') {
            expect(s, pos, "null");
            return v;
        }
        if (c == '-' || std::isdigit(static_cast<unsigned char>(c))) {
            const size_t start = pos;
            if (s[pos] == '-') ++pos;
            if (pos >= s.size() || !std::isdigit(static_cast<unsigned char>(s[pos]))) fail(pos, "digit expected");
            if (s[pos] == '0' && pos + 1 < s.size() && std::isdigit(static_cast<unsigned char>(s[pos + 1]))) {
                fail(pos, "leading zero");
            }
            while (pos < s.size() && std::isdigit(static_cast<unsigned char>(s[pos]))) ++pos;
            v.kind = NUMBER;
            v.number = std::stoll(s.substr(start, pos - start));
            return v;
        }
        fail(pos, std::string("unexpected character ") + c);
    }
};

}  // namespace korvi::test
