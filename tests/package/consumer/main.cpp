// Reads a tuning file through the library and prints its format version and profiles, one
// line each, in the words `korvictl inspect --brief` uses for them.
#include <cstdio>
#include <string>

#include "tuning/DeviceData.h"
#include "tuning/TuningFileParser.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: korvi_consumer TUNING_FILE\n");
        return 2;
    }
    korvi::TuningFileParser parser;
    if (parser.setTuningFile(argv[1]) != 0) {
        std::fprintf(stderr, "cannot read %s\n", argv[1]);
        return 1;
    }
    std::printf("format version %s\n", parser.getDeviceData()->getFormatVersion().c_str());
    for (int id = 0; id < parser.getNumOfProfiles(); ++id) {
        std::printf("profile %d \"%s\"\n", id, parser.getProfileName(id).c_str());
    }
    return 0;
}
