// The output mode: the virtualizer switch, the endpoint kind and the orientation, plus the mix
// matrix on the internal speaker.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class OutputModeTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {
        VIRTUALIZER_ENABLE,
        OUTPUT_MIX_MATRIX,
        ORIENTATION,
    };

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
