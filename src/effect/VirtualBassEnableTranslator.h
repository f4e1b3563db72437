// The virtual bass switch and type. The switch travels as the mode ("VBM") and the type under
// "VBON": the effect reads them crossed like this.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class VirtualBassEnableTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {
        VIRTUAL_BASS_ENABLE,
        VIRTUAL_BASS_TYPE,
    };

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
