// The complex equalizer's per-channel tunings, sent while it is enabled, for two or four
// output channels.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class ComplexEqualizerTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {
        COMPLEX_EQUALIZER_TUNING_LEFT,
        COMPLEX_EQUALIZER_TUNING_LEFT_SURROUND,
        COMPLEX_EQUALIZER_TUNING_RIGHT,
        COMPLEX_EQUALIZER_TUNING_RIGHT_SURROUND,
    };

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
