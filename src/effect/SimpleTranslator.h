// The common case: one parameter's values copied unchanged into one effect entry.
#pragma once

#include "effect/SfxParameter.h"
#include "effect/Translator.h"

namespace korvi {

class SimpleTranslator : public Translator {
public:
    SimpleTranslator(SfxParameter sfxParameter, Parameter source);

    const std::vector<Parameter>& getSrcParams() const override { return mSrcParams; }
    // Always emits one entry: an absent parameter gives an entry with no values.
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;

    SfxParameter getSfxParameter() const { return mSfxParameter; }

private:
    SfxParameter mSfxParameter;
    std::vector<Parameter> mSrcParams;
};

}  // namespace korvi
