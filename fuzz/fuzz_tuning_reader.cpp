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

#include "TuningInputFile.h"
#include "tuning/DeviceData.h"
#include "tuning/TuningFileParser.h"

namespace {

// Keeps the reads of every record from being optimised away.
volatile size_t gSink;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    korvi::fuzz::TuningInputFile::init();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!korvi::fuzz::TuningInputFile::write(data, size)) return 0;
    const std::string& gPath = korvi::fuzz::TuningInputFile::path();
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
