#include "effect/CustomDRCTranslator.h"

namespace korvi {

void CustomDRCTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                       Endpoint /*endpoint*/, bool /*mono*/) const {
    cmd.add(SFX_DRCM, &read(values, CUSTOM_DRC_METADATA));
}

}  // namespace korvi
