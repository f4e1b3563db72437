// The dialog enhancer switch, sent under both of the effect's codes for it.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class DeEnableTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {DIALOG_ENHANCER_ENABLE};

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
