#include "effect/GeqTranslator.h"

namespace korvi {

void GeqTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                 Endpoint /*endpoint*/, bool /*mono*/) const {
    const std::vector<int>& frequency = read(values, GEQ_FREQUENCY);
    const std::vector<int>& gain = read(values, GEQ_GAIN);
    cmd.add(SFX_GEBS, countOf(frequency), {frequency, gain});
    cmd.add(SFX_VCBF, &frequency);
}

}  // namespace korvi
