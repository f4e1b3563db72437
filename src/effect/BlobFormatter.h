// Renders a parameter blob as text for people: tests, log lines and the host tool.
//
// One line per entry, "<device> <code> <values>", e.g. "speaker DVLE 1" or
// "profile IEBS 20 -3 40". The device is named when it is one of the six port devices or the
// profile level ("profile"), else written in hex ("0xffffffff" for an entry added before any
// device was set). The code is the four-character code read back from the id ("DVLE",
// "VOL"); an id that no code can produce is written in hex. An entry without values ends after
// its code. The blob is decoded by the store's own parser, so a blob that the store would
// reject renders as the single line "invalid parameter blob: <reason>".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace korvi {

class BlobFormatter {
public:
    static std::string format(const void* data, uint32_t sizeBytes);
    static std::string format(const std::vector<int>& blob);

    // "speaker", "profile", ... or hex for a device with no name.
    static std::string deviceText(int32_t device);
    // The code an id was made from, upper-case as the effect names it, or the id in hex when no
    // code of one to four characters yields it.
    static std::string codeText(int32_t paramId);
};

}  // namespace korvi
