// The intelligent equaliser's target curve: band count, frequencies and targets.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class IeqTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {IEQ_FREQUENCY, IEQ_TARGET};

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
