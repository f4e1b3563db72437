// The dialog enhancer amount, its first value clamped at 12 on the way out.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class DeAmountTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {DIALOG_ENHANCER_AMOUNT};

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
