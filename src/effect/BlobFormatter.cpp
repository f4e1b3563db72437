#include "effect/BlobFormatter.h"

#include <sfxparamstorage/EffectParamParser.h>

#include <cinttypes>
#include <cstdio>

#include "model/AndroidDevice.h"

namespace korvi {

namespace {

std::string hex(uint32_t value, int width) {
    char text[16];
    snprintf(text, sizeof(text), "0x%0*" PRIx32, width, value);
    return text;
}

// A byte the id rule can leave in a code: printable, not a space and not an upper-case letter
// (the rule lower-cases those).
bool isCodeByte(unsigned char c) {
    return c > ' ' && c <= '~' && !(c >= 'A' && c <= 'Z');
}

}  // namespace

std::string BlobFormatter::deviceText(int32_t device) {
    const char* name = androidDeviceName(static_cast<uint32_t>(device));
    return name != nullptr ? std::string(name) : hex(static_cast<uint32_t>(device), 1);
}

std::string BlobFormatter::codeText(int32_t paramId) {
    const uint32_t id = static_cast<uint32_t>(paramId);
    unsigned char bytes[4];
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<unsigned char>(id >> (8 * i));
    }
    // Codes shorter than four characters leave the high bytes 0.
    int length = 4;
    while (length > 0 && bytes[length - 1] == 0) {
        --length;
    }
    if (length == 0) {
        return hex(id, 8);
    }
    std::string code;
    for (int i = 0; i < length; ++i) {
        if (!isCodeByte(bytes[i])) {
            return hex(id, 8);
        }
        const char c = static_cast<char>(bytes[i]);
        code += (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return code;
}

std::string BlobFormatter::format(const void* data, uint32_t sizeBytes) {
    android::EffectParamParser parser(data, sizeBytes);
    if (!parser.validate()) {
        return std::string("invalid parameter blob: ") + parser.error() + "\n";
    }
    std::string text;
    parser.begin();
    int32_t device;
    int32_t paramId;
    uint32_t count;
    const int32_t* values;
    while (parser.next(&device, &paramId, &count, &values)) {
        text += deviceText(device);
        text += ' ';
        text += codeText(paramId);
        for (uint32_t i = 0; i < count; ++i) {
            text += ' ';
            text += std::to_string(values[i]);
        }
        text += '\n';
    }
    return text;
}

std::string BlobFormatter::format(const std::vector<int>& blob) {
    if (blob.size() > UINT32_MAX / sizeof(int)) {
        return "invalid parameter blob: larger than 4 GiB\n";
    }
    return format(blob.data(), static_cast<uint32_t>(blob.size() * sizeof(int)));
}

}  // namespace korvi
