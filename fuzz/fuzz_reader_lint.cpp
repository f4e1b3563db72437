// Feeds arbitrary bytes to the tuning-file reader and to korvictl's lint, and checks that the two
// agree on every record: the profile ids, the IEQ preset ids and the GEQ presets' profile ids the
// lint warns about must be the ones the reader stored. A disagreement aborts: the lint would then
// tell a tuning author something other than what the service does.
//
// Run: make fuzz-run (seeds: fuzz/corpus/tuning_reader and the sample files under data/).
#include <android/log.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "TuningLint.h"
#include "TuningInputFile.h"
#include "tuning/DeviceData.h"
#include "tuning/TuningFileParser.h"

namespace {

void disagree(const char* what) {
    std::fprintf(stderr, "reader and lint disagree on the %s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    korvi::fuzz::TuningInputFile::init();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (!korvi::fuzz::TuningInputFile::write(data, size)) return 0;
    const std::string& gPath = korvi::fuzz::TuningInputFile::path();
    korvi::TuningFileParser reader;
    if (reader.setTuningFile(gPath) != 0) return 0;
    // The document as korvictl reads it for the lint.
    xmlDoc* doc = xmlReadFile(gPath.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_BIG_LINES);
    if (doc == nullptr) std::abort();  // the reader read it, so it is well-formed
    korvi::ctl::TuningLint lint(doc, reader);
    lint.run();
    const korvi::ctl::TuningLint::RecordIds ids = lint.recordIds();
    korvi::DeviceData* deviceData = reader.getDeviceData();

    std::vector<int> profileIds;
    for (auto* p : deviceData->getProfiles()) profileIds.push_back(p->getProfileId());
    std::vector<int> lintProfileIds = ids.profileIds;
    std::sort(profileIds.begin(), profileIds.end());
    std::sort(lintProfileIds.begin(), lintProfileIds.end());
    if (profileIds != lintProfileIds) disagree("profile ids");

    std::set<int> ieqIds;
    for (auto* p : deviceData->getIeqPresets()) ieqIds.insert(p->getPresetId());
    if (ieqIds != ids.ieqPresetIds) disagree("IEQ preset ids");

    std::set<int> geqIds;
    for (auto* p : deviceData->getGeqPresets()) geqIds.insert(p->getProfileId());
    if (geqIds != ids.geqProfileIds) disagree("GEQ preset profile ids");
    xmlFreeDoc(doc);
    return 0;
}
