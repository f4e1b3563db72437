// The complex equalizer's per-channel tunings, sent while it is enabled, for two or four
// output channels.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class ComplexEqualizerTranslator : public Translator {
public:
    static const std::vector<Parameter> kSrcParams;

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
