#include "effect/IeqTranslator.h"

namespace korvi {

void IeqTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                 Endpoint /*endpoint*/, bool /*mono*/) const {
    const std::vector<int>& frequency = read(values, IEQ_FREQUENCY);
    const std::vector<int>& target = read(values, IEQ_TARGET);
    cmd.add(SFX_IEBS, countOf(frequency), {frequency, target});
}

}  // namespace korvi
