// The audio regulator: stress amount, band tuning and, while sibilance suppression is on, the
// per-channel suppression amounts.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class AudioRegulatorTranslator : public Translator {
public:
    static const std::vector<Parameter> kSrcParams;

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
