// The audio regulator: stress amount, band tuning and, while sibilance suppression is on, the
// per-channel suppression amounts.
#pragma once

#include "effect/Translator.h"

namespace korvi {

class AudioRegulatorTranslator : public Translator {
public:
    // Its source parameters, in the order it reads them.
    static inline const std::vector<Parameter> kSrcParams = {
        REGULATOR_STRESS_AMOUNT,
        REGULATOR_FREQUENCY,
        REGULATOR_ISOLATED_BAND,
        REGULATOR_THRESHOLD_HIGH,
        REGULATOR_THRESHOLD_LOW,
        REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT,
        REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT_SURROUND,
        REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT,
        REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT_SURROUND,
    };

    const std::vector<Parameter>& getSrcParams() const override { return kSrcParams; }
    void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                      bool mono) const override;
};

}  // namespace korvi
