// korvictl blob: a parameter blob in readable form, one line per entry, decoded by the same
// parser the shared store uses.
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <sfxparamstorage/EffectParamParser.h>

#include "Command.h"
#include "effect/BlobFormatter.h"

namespace korvi::ctl {

namespace {

// Far beyond any blob the service builds (a few kilobytes); a file that declares more is not one.
constexpr size_t kMaxBlobBytes = 16 * 1024 * 1024;

// One word written in decimal or 0x-hex (a leading 0 is a decimal digit, not octal), within 32
// bits (either signed or unsigned reading).
bool parseWord(const std::string& text, int32_t* word) {
    const size_t digits = !text.empty() && (text[0] == '-' || text[0] == '+') ? 1 : 0;
    const bool hex = text.compare(digits, 2, "0x") == 0 || text.compare(digits, 2, "0X") == 0;
    errno = 0;
    char* end = nullptr;
    const long long value = strtoll(text.c_str(), &end, hex ? 16 : 10);
    if (text.empty() || *end != '\0' || errno != 0 || value < INT32_MIN || value > UINT32_MAX) {
        return false;
    }
    *word = static_cast<int32_t>(static_cast<uint32_t>(value));
    return true;
}

struct FileClose {
    void operator()(FILE* file) const { fclose(file); }
};

// Reads a blob from a stream as far as its own words say it reaches, plus one word to tell whether
// anything follows: an endless input (/dev/zero, a pipe) is never read to its end.
class BlobReader {
public:
    explicit BlobReader(FILE* file) : mFile(file) {}

    // False with a reason when the input cannot be read or is larger than kMaxBlobBytes.
    bool read(std::vector<unsigned char>& bytes, std::string& error) {
        int32_t count = 0;
        if (readWords(bytes, 2) && (count = wordAt(bytes, 1)) >= 0) {
            for (int32_t i = 0; i < count && !mShort && mError.empty(); ++i) {
                if (!readWords(bytes, 3)) break;
                const int32_t values = wordAt(bytes, bytes.size() / 4 - 1);
                if (values < 0 || !readWords(bytes, static_cast<size_t>(values))) break;
            }
        }
        if (!mShort && mError.empty()) readBytes(bytes, 4);  // a word after the last entry
        error = mError;
        return mError.empty();
    }

private:
    static int32_t wordAt(const std::vector<unsigned char>& bytes, size_t index) {
        int32_t word;
        std::memcpy(&word, bytes.data() + index * 4, sizeof(word));
        return word;
    }

    bool readWords(std::vector<unsigned char>& bytes, size_t words) {
        if (words > kMaxBlobBytes / 4) words = kMaxBlobBytes / 4 + 1;
        return readBytes(bytes, words * 4);
    }

    bool readBytes(std::vector<unsigned char>& bytes, size_t count) {
        while (count > 0 && !mShort) {
            if (bytes.size() >= kMaxBlobBytes) {
                mError = "larger than " + std::to_string(kMaxBlobBytes) +
                         " bytes: not a parameter blob";
                return false;
            }
            const size_t chunk = std::min({count, size_t{65536}, kMaxBlobBytes - bytes.size()});
            const size_t old = bytes.size();
            bytes.resize(old + chunk);
            const size_t got = fread(bytes.data() + old, 1, chunk, mFile);
            bytes.resize(old + got);
            if (got < chunk) {
                if (ferror(mFile)) mError = strerror(errno);
                mShort = true;
            }
            count -= got;
        }
        return !mShort && mError.empty();
    }

    FILE* mFile;
    bool mShort = false;
    std::string mError;
};

bool readFile(const std::string& path, std::vector<unsigned char>* bytes, std::string& error) {
    struct stat st {};
    if (stat(path.c_str(), &st) != 0) {
        error = strerror(errno);
        return false;
    }
    if (S_ISDIR(st.st_mode)) {
        error = "is a directory";
        return false;
    }
    if (S_ISREG(st.st_mode) && static_cast<unsigned long long>(st.st_size) > kMaxBlobBytes) {
        error = "larger than " + std::to_string(kMaxBlobBytes) + " bytes: not a parameter blob";
        return false;
    }
    std::unique_ptr<FILE, FileClose> file(fopen(path.c_str(), "rb"));
    if (!file) {
        error = strerror(errno);
        return false;
    }
    if (!S_ISREG(st.st_mode)) return BlobReader(file.get()).read(*bytes, error);
    // A regular file is read whole, so that the store's own reason for refusing it is shown.
    bytes->resize(static_cast<size_t>(st.st_size));
    bytes->resize(fread(bytes->data(), 1, bytes->size(), file.get()));
    if (ferror(file.get())) {
        error = strerror(errno);
        return false;
    }
    return true;
}

}  // namespace

int runBlob(const std::vector<std::string>& args) {
    std::vector<unsigned char> bytes;
    if (args.size() == 1 && args[0] != "--words") {
        std::string error;
        if (!readFile(args[0], &bytes, error)) {
            fprintf(stderr, "korvictl: cannot read %s: %s\n", args[0].c_str(), error.c_str());
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
    if (bytes.size() > kMaxBlobBytes) return usageError("blob larger than 16 MiB");

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
