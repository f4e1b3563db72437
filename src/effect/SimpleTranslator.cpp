#include "effect/SimpleTranslator.h"

namespace korvi {

SimpleTranslator::SimpleTranslator(SfxParameter sfxParameter, Parameter source)
    : mSfxParameter(sfxParameter), mSrcParams{source} {}

void SimpleTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                    Endpoint /*endpoint*/, bool /*mono*/) const {
    cmd.add(mSfxParameter, {read(values, mSrcParams.front())});
}

}  // namespace korvi
