#define LOG_TAG "SfxParameter"

#include "effect/SfxParameter.h"

#include <log/log.h>

#include <array>
#include <string>

namespace korvi {
namespace {

constexpr const char* kSfxParameterCodes[kSfxParameterCount] = {
    "VOL",
    "PSTG",
    "PREG",
    "PLB",
    "NGON",
    "DEON",
    "DEA",
    "DED",
    "VMB",
    "DVME",
    "DVMC",
    "DVLE",
    "DVLA",
    "DVLI",
    "DVLO",
    "DVLC",
    "IEON",
    "IEA",
    "AROD",
    "ARTP",
    "GEON",
    "AOON",
    "VCNB",
    "VCBF",
    "VER",
    "IEBS",
    "ARDS",
    "ARON",
    "ARDE",
    "ARSA",
    "ARBS",
    "ARTI",
    "DOM",
    "DSB",
    "GEBS",
    "BEON",
    "BEB",
    "BECF",
    "BEW",
    "VBON",
    "VBM",
    "VBSF",
    "VBOG",
    "VBSG",
    "VBHG",
    "VBMF",
    "VBBG",
    "VBCT",
    "VBHM",
    "VBHB",
    "VBMX",
    "VBRG",
    "AOBS",
    "MSCE",
    "MIEE",
    "MDLE",
    "MDEE",
    "MAVE",
    "VCBS",
    "VNBS",
    "DMC",
    "DHFM",
    "DFSA",
    "DSA",
    "DHSA",
    "SVSB",
    "CEON",
    "CEQT",
    "DPLP",
    "MVBE",
    "RSSE",
    "RSSA",
    "IEID",
    "DRCM",
    "HPON",
    "HPTW",
    "HPAT",
    "HPAA",
    "HPAR",
    "BMDE",
    "BMDT",
    "RVSE",
    "RVSA",
    "VSSD",
};

constexpr int32_t codeToId(const char* code, size_t length) {
    if (length > 4) return 0;
    uint32_t id = 0;
    for (size_t i = 0; i < length; ++i) {
        uint32_t c = static_cast<unsigned char>(code[i]);
        if (c >= 'A' && c <= 'Z') c += 'a' - 'A';
        id |= c << (8 * i);
    }
    return static_cast<int32_t>(id);
}

constexpr int32_t codeToId(const char* code) {
    return codeToId(code, std::char_traits<char>::length(code));
}

// Every code's id, worked out once at compile time: ids are asked for on every entry sent.
constexpr std::array<int32_t, kSfxParameterCount> makeIds() {
    std::array<int32_t, kSfxParameterCount> ids{};
    for (int i = 0; i < kSfxParameterCount; ++i) ids[i] = codeToId(kSfxParameterCodes[i]);
    return ids;
}
constexpr std::array<int32_t, kSfxParameterCount> kSfxParameterIds = makeIds();

void checkParameter(SfxParameter parameter) {
    const int value = static_cast<int>(parameter);
    LOG_ALWAYS_FATAL_IF(value < 0 || value >= kSfxParameterCount, "invalid SfxParameter %d", value);
}

}  // namespace

const char* sfxParameterCode(SfxParameter parameter) {
    checkParameter(parameter);
    return kSfxParameterCodes[parameter];
}

int32_t sfxParameterId(SfxParameter parameter) {
    checkParameter(parameter);
    return kSfxParameterIds[parameter];
}

int32_t sfxCodeToId(const std::string& code) {
    return codeToId(code.data(), code.size());
}

bool sfxParameterForId(int32_t id, SfxParameter* parameter) {
    for (int i = 0; i < kSfxParameterCount; ++i) {
        if (codeToId(kSfxParameterCodes[i]) == id) {
            if (parameter != nullptr) *parameter = static_cast<SfxParameter>(i);
            return true;
        }
    }
    return false;
}

}  // namespace korvi
