#include "effect/VirtualBassEnableTranslator.h"

namespace korvi {

namespace {
// The virtual bass mode the effect runs in while the switch is on; 0 turns it off.
constexpr int kVirtualBassOnMode = 3;
}  // namespace

void VirtualBassEnableTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                               Endpoint /*endpoint*/, bool /*mono*/) const {
    cmd.add(SFX_VBM, firstValue(values, VIRTUAL_BASS_ENABLE) != 0 ? kVirtualBassOnMode : 0);
    cmd.add(SFX_VBON, {read(values, VIRTUAL_BASS_TYPE)});
}

}  // namespace korvi
