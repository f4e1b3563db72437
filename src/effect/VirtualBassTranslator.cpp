#include "effect/VirtualBassTranslator.h"

namespace korvi {

void VirtualBassTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                         Endpoint /*endpoint*/, bool /*mono*/) const {
    cmd.add(SFX_VBSF, {read(values, VIRTUAL_BASS_SRC_FREQ_LOW), read(values, VIRTUAL_BASS_SRC_FREQ_HIGH)});
    cmd.add(SFX_VBMF, {read(values, VIRTUAL_BASS_MIX_FREQ_LOW), read(values, VIRTUAL_BASS_MIX_FREQ_HIGH)});
}

}  // namespace korvi
