// Feeds arbitrary bytes to the tuning-file reader as a file on disk, the way the service reads
// the factory and OEM files: the parser must never crash, leak or read out of bounds, whatever
// the file holds. Each input is read twice by one parser (records accumulate) and validated.
//
// Run: make fuzz-run (seeds: fuzz/corpus/tuning_reader and the sample files under data/).
#include <android/log.h>
#include <libxml/xmlerror.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include "tuning/DeviceData.h"
#include "tuning/TuningFileParser.h"

namespace {

std::string gPath;
// Keeps the reads of every record from being optimised away.
volatile size_t gSink;

void dropLog(const struct __android_logger_data*, const char*) {}

void dropXmlError(void*, const char*, ...) {}

bool writeInput(const uint8_t* data, size_t size) {
    FILE* file = std::fopen(gPath.c_str(), "wb");
    if (file == nullptr) return false;
    const bool ok = size == 0 || std::fwrite(data, 1, size, file) == size;
    return std::fclose(file) == 0 && ok;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    char templ[] = "/tmp/korvi-fuzz-XXXXXX";
    const int fd = mkstemp(templ);
    if (fd < 0) std::abort();
    close(fd);
    gPath = templ;
    std::atexit([] { unlink(gPath.c_str()); });
    // Millions of inputs: keep the log and the XML library's complaints out of the output.
    __android_log_set_logger(dropLog);
    xmlSetGenericErrorFunc(nullptr, dropXmlError);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!writeInput(data, size)) return 0;
    korvi::TuningFileParser parser;
    if (parser.setTuningFile(gPath) != 0) return 0;
    parser.setTuningFile(gPath);
    korvi::DeviceData* deviceData = parser.getDeviceData();
    deviceData->validateData();
    // Touch every record so a dangling pointer in the sets shows up here.
    size_t values = 0;
    for (auto* p : deviceData->getIeqPresets()) values += p->mValues.size();
    for (auto* p : deviceData->getGeqPresets()) values += p->mValues.size();
    for (auto* p : deviceData->getProfiles()) values += p->mValues.size() + p->getName().size();
    for (auto* p : deviceData->getProfileEndpoints()) values += p->mValues.size();
    for (auto* p : deviceData->getTunings()) values += p->mValues.size() + p->getName().size();
    for (auto* p : deviceData->getDeviceTunings()) values += p->getDevice().size();
    for (int id = 0; id < parser.getNumOfProfiles(); ++id) values += parser.getProfileName(id).size();
    gSink = values;
    return 0;
}
