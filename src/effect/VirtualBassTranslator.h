// The virtual bass source and mix frequency ranges, each low and high bound sent together.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class VirtualBassTranslator : public Translator {
public:
    static const std::vector<Parameter> kSrcParams;

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
