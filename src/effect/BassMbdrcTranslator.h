// The bass multi-band compressor tuning, sent only while the compressor is enabled.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class BassMbdrcTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {BASS_MBDRC_TUNING};

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
