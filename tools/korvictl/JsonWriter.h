// A small streaming JSON writer for the tool's --json output: objects and arrays nest, commas and
// indentation are placed by the writer, integer lists stay on one line.
#pragma once

#include <string>
#include <vector>

namespace korvi::ctl {

class JsonWriter {
public:
    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    // The name of the next member of the current object.
    void key(const std::string& name);
    void value(const std::string& text);
    void value(const char* text) { value(std::string(text)); }
    void value(long long number);
    void value(int number) { value(static_cast<long long>(number)); }
    void value(bool flag);
    void value(const std::vector<int>& numbers);

    // The document written so far, ended by a newline once the outermost value is closed.
    const std::string& str() const { return mOut; }

    static std::string escape(const std::string& text);

private:
    struct Level {
        bool isArray;
        int count;
    };

    // Comma, line break and indentation before a member or element.
    void beforeValue();
    void open(char bracket, bool isArray);
    void close(char bracket);

    std::string mOut;
    std::vector<Level> mLevels;
    bool mAfterKey = false;
};

}  // namespace korvi::ctl
