// korvictl blob: a parameter blob in readable form, one line per entry, decoded by the same
// parser the shared store uses.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <sfxparamstorage/EffectParamParser.h>

#include "Command.h"
#include "effect/BlobFormatter.h"

namespace korvi::ctl {

namespace {

// One word written in decimal or 0x-hex, within 32 bits (either signed or unsigned reading).
bool parseWord(const std::string& text, int32_t* word) {
    errno = 0;
    char* end = nullptr;
    const long long value = strtoll(text.c_str(), &end, 0);
    if (text.empty() || *end != '\0' || errno != 0 || value < INT32_MIN || value > UINT32_MAX) {
        return false;
    }
    *word = static_cast<int32_t>(static_cast<uint32_t>(value));
    return true;
}

bool readFile(const std::string& path, std::vector<unsigned char>* bytes) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    bytes->assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return !in.bad();
}

}  // namespace

int runBlob(const std::vector<std::string>& args) {
    std::vector<unsigned char> bytes;
    if (args.size() == 1 && args[0] != "--words") {
        if (!readFile(args[0], &bytes)) {
            fprintf(stderr, "korvictl: cannot read %s: %s\n", args[0].c_str(), strerror(errno));
            return 1;
        }
    } else if (args.size() >= 1 && args[0] == "--words") {
        for (size_t i = 1; i < args.size(); ++i) {
            int32_t word;
            if (!parseWord(args[i], &word)) return usageError("not a 32-bit word: '" + args[i] + "'");
            const auto* b = reinterpret_cast<const unsigned char*>(&word);
            bytes.insert(bytes.end(), b, b + sizeof(word));
        }
    } else {
        return usageError("blob takes one FILE or --words WORD...");
    }
    if (bytes.size() > UINT32_MAX) return usageError("blob larger than 4 GiB");

    const uint32_t size = static_cast<uint32_t>(bytes.size());
    android::EffectParamParser parser(bytes.data(), size);
    if (!parser.validate()) {
        fprintf(stderr, "korvictl: invalid parameter blob: %s\n", parser.error());
        return 1;
    }
    printf("target %s, %u %s\n", BlobFormatter::deviceText(parser.targetDevice()).c_str(), parser.entryCount(),
           parser.entryCount() == 1 ? "entry" : "entries");
    printf("%s", BlobFormatter::format(bytes.data(), size).c_str());
    return 0;
}

}  // namespace korvi::ctl
