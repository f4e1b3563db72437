// The audio optimizer's band frequencies and per-channel gains for two or four output channels.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class AudioOptimizerTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {
        AUDIO_OPTIMIZER_FREQUENCY,
        AUDIO_OPTIMIZER_GAIN_L,
        AUDIO_OPTIMIZER_GAIN_LS,
        AUDIO_OPTIMIZER_GAIN_R,
        AUDIO_OPTIMIZER_GAIN_RS,
    };

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
