// The effect's own parameter vocabulary. Each member travels in the parameter blob as a 32-bit
// id made from its code of one to four characters: the code lower-cased and read as a
// little-endian integer ("DVLE" travels as 'd','v','l','e' = 0x656c7664, "VOL" as 0x006c6f76).
#pragma once

#include <cstdint>
#include <string>

namespace korvi {

enum SfxParameter : int32_t {
    SFX_VOL = 0,
    SFX_PSTG = 1,
    SFX_PREG = 2,
    SFX_PLB = 3,
    SFX_NGON = 4,
    SFX_DEON = 5,
    SFX_DEA = 6,
    SFX_DED = 7,
    SFX_VMB = 8,
    SFX_DVME = 9,
    SFX_DVMC = 10,
    SFX_DVLE = 11,
    SFX_DVLA = 12,
    SFX_DVLI = 13,
    SFX_DVLO = 14,
    SFX_DVLC = 15,
    SFX_IEON = 16,
    SFX_IEA = 17,
    SFX_AROD = 18,
    SFX_ARTP = 19,
    SFX_GEON = 20,
    SFX_AOON = 21,
    SFX_VCNB = 22,
    SFX_VCBF = 23,
    SFX_VER = 24,
    SFX_IEBS = 25,
    SFX_ARDS = 26,
    SFX_ARON = 27,
    SFX_ARDE = 28,
    SFX_ARSA = 29,
    SFX_ARBS = 30,
    SFX_ARTI = 31,
    SFX_DOM = 32,
    SFX_DSB = 33,
    SFX_GEBS = 34,
    SFX_BEON = 35,
    SFX_BEB = 36,
    SFX_BECF = 37,
    SFX_BEW = 38,
    SFX_VBON = 39,
    SFX_VBM = 40,
    SFX_VBSF = 41,
    SFX_VBOG = 42,
    SFX_VBSG = 43,
    SFX_VBHG = 44,
    SFX_VBMF = 45,
    SFX_VBBG = 46,
    SFX_VBCT = 47,
    SFX_VBHM = 48,
    SFX_VBHB = 49,
    SFX_VBMX = 50,
    SFX_VBRG = 51,
    SFX_AOBS = 52,
    SFX_MSCE = 53,
    SFX_MIEE = 54,
    SFX_MDLE = 55,
    SFX_MDEE = 56,
    SFX_MAVE = 57,
    SFX_VCBS = 58,
    SFX_VNBS = 59,
    SFX_DMC = 60,
    SFX_DHFM = 61,
    SFX_DFSA = 62,
    SFX_DSA = 63,
    SFX_DHSA = 64,
    SFX_SVSB = 65,
    SFX_CEON = 66,
    SFX_CEQT = 67,
    SFX_DPLP = 68,
    SFX_MVBE = 69,
    SFX_RSSE = 70,
    SFX_RSSA = 71,
    SFX_IEID = 72,
    SFX_DRCM = 73,
    SFX_HPON = 74,
    SFX_HPTW = 75,
    SFX_HPAT = 76,
    SFX_HPAA = 77,
    SFX_HPAR = 78,
    SFX_BMDE = 79,
    SFX_BMDT = 80,
    SFX_RVSE = 81,
    SFX_RVSA = 82,
    SFX_VSSD = 83,
};

inline constexpr int kSfxParameterCount = 84;

// The code as the effect names it ("DVLE"). A value outside 0..83 is a programming error and
// aborts the process.
const char* sfxParameterCode(SfxParameter parameter);

// The id the blob carries for the parameter. A value outside 0..83 aborts the process.
int32_t sfxParameterId(SfxParameter parameter);

// The id rule on its own: ASCII upper-case letters lower-cased, the bytes read as a
// little-endian integer, absent characters 0; a code longer than four characters gives 0.
int32_t sfxCodeToId(const std::string& code);

// The parameter a blob id stands for; false when the id is none of the 84.
bool sfxParameterForId(int32_t id, SfxParameter* parameter);

}  // namespace korvi
