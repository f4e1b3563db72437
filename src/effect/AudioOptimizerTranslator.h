// The audio optimizer's band frequencies and per-channel gains for two or four output channels.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class AudioOptimizerTranslator : public Translator {
public:
    static const std::vector<Parameter> kSrcParams;

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
