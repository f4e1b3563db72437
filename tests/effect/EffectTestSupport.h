// Helpers of the effect-path tests: expected blob entries written out word by word, a value set
// that admits every parameter, and an effect that records what it is asked to send.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "effect/SetParamCommand.h"
#include "effect/SfxEffect.h"
#include "model/ParameterValues.h"

namespace korvi::test {

// The blob id of a code, computed here independently of the library: lower-cased ASCII letters
// read as a little-endian 32-bit number.
inline int32_t codeId(const std::string& code) {
    uint32_t id = 0;
    for (size_t i = 0; i < code.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(code[i]);
        if (c >= 'A' && c <= 'Z') c = static_cast<unsigned char>(c - 'A' + 'a');
        id |= static_cast<uint32_t>(c) << (8 * i);
    }
    return static_cast<int32_t>(id);
}

// One entry: [device, id(code), n, values].
inline std::vector<int> entry(int device, const std::string& code, const std::vector<int>& values) {
    std::vector<int> words{device, codeId(code), static_cast<int>(values.size())};
    words.insert(words.end(), values.begin(), values.end());
    return words;
}

// Entries back to back.
inline std::vector<int> entries(std::initializer_list<std::vector<int>> list) {
    std::vector<int> words;
    for (const auto& e : list) words.insert(words.end(), e.begin(), e.end());
    return words;
}

// The words after the two header words of a command's blob.
inline std::vector<int> entriesOf(const SetParamCommand& cmd) {
    const std::vector<int>& blob = cmd.getBlob();
    return std::vector<int>(blob.begin() + 2, blob.end());
}

// A plain value set that admits every parameter, standing in for a view.
class AnyValues : public ParameterValues {
public:
    AnyValues() : ParameterValues(-1, false) {}
    const std::set<Parameter>& getValidParams() const override {
        static const std::set<Parameter> all = [] {
            std::set<Parameter> s;
            for (int i = 0; i < kParameterCount; ++i) s.insert(static_cast<Parameter>(i));
            return s;
        }();
        return all;
    }
};

// Records every blob handed to the store instead of writing it.
class RecordingEffect : public SfxEffect {
public:
    RecordingEffect() : SfxEffect(0, android::String16()) {}
    void sendSharedStore(void* data, unsigned size) override {
        sizes.push_back(size);
        std::vector<int> words(size / sizeof(int));
        std::memcpy(words.data(), data, words.size() * sizeof(int));
        blobs.push_back(words);
    }
    std::vector<std::vector<int>> blobs;
    std::vector<unsigned> sizes;
};

}  // namespace korvi::test
