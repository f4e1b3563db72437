// What the tuning-file fuzzers share: the reader reads files, so each input is written to one
// temporary file (removed at exit), and the log and the XML library's complaints are kept out of
// the fuzzer's output, which millions of inputs would flood.
#pragma once

#include <android/log.h>
#include <libxml/xmlerror.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace korvi::fuzz {

class TuningInputFile {
public:
    // Call once, from LLVMFuzzerInitialize.
    static void init() {
        char templ[] = "/tmp/korvi-fuzz-XXXXXX";
        const int fd = mkstemp(templ);
        if (fd < 0) std::abort();
        close(fd);
        path() = templ;
        std::atexit([] { unlink(path().c_str()); });
        __android_log_set_logger([](const struct __android_logger_data*, const char*) {});
        xmlSetGenericErrorFunc(nullptr, dropXmlError);
    }

    // Replaces the file's content with the input; false when it could not be written whole.
    static bool write(const uint8_t* data, size_t size) {
        FILE* file = std::fopen(path().c_str(), "wb");
        if (file == nullptr) return false;
        const bool ok = size == 0 || std::fwrite(data, 1, size, file) == size;
        return std::fclose(file) == 0 && ok;
    }

    static std::string& path() {
        static std::string sPath;
        return sPath;
    }

private:
    static void dropXmlError(void*, const char*, ...) {}
};

}  // namespace korvi::fuzz
