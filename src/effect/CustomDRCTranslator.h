// The profile's custom dynamic-range-control metadata, sent as it is.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class CustomDRCTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {CUSTOM_DRC_METADATA};

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
