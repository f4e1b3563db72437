// The bass multi-band compressor tuning, sent only while the compressor is enabled.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class BassMbdrcTranslator : public Translator {
public:
    static const std::vector<Parameter> kSrcParams;

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
