// The graphic equaliser: band count, frequencies and gains, and the frequencies once more on their
// own.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class GeqTranslator : public Translator {
public:
    static const std::vector<Parameter> kSrcParams;

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
