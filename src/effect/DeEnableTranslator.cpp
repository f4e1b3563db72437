#include "effect/DeEnableTranslator.h"

namespace korvi {

void DeEnableTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                      Endpoint /*endpoint*/, bool /*mono*/) const {
    const std::vector<int>& enable = read(values, DIALOG_ENHANCER_ENABLE);
    cmd.add(SFX_DEON, {enable});
    cmd.add(SFX_MDEE, {enable});
}

}  // namespace korvi
