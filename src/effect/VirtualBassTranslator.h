// The virtual bass source and mix frequency ranges, each low and high bound sent together.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class VirtualBassTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {
        VIRTUAL_BASS_SRC_FREQ_LOW,
        VIRTUAL_BASS_SRC_FREQ_HIGH,
        VIRTUAL_BASS_MIX_FREQ_LOW,
        VIRTUAL_BASS_MIX_FREQ_HIGH,
    };

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
