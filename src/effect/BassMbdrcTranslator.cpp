#include "effect/BassMbdrcTranslator.h"

namespace korvi {

void BassMbdrcTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                       Endpoint /*endpoint*/, bool /*mono*/) const {
    if (firstValue(values, BASS_MBDRC_ENABLE) == 0) return;
    cmd.add(SFX_BMDT, {read(values, BASS_MBDRC_TUNING)});
}

}  // namespace korvi
