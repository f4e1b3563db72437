// The graphic equaliser: band count, frequencies and gains, and the frequencies once more on their
// own.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class GeqTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {GEQ_FREQUENCY, GEQ_GAIN};

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
