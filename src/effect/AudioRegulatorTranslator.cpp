#include "effect/AudioRegulatorTranslator.h"

namespace korvi {

void AudioRegulatorTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                            Endpoint /*endpoint*/, bool /*mono*/) const {
    const std::vector<int>& channelList = read(values, OUTPUT_CHANNELS);
    cmd.add(SFX_ARSA, {channelList, read(values, REGULATOR_STRESS_AMOUNT)});

    const std::vector<int>& frequency = read(values, REGULATOR_FREQUENCY);
    cmd.add(SFX_ARBS, countOf(frequency),
            {frequency, read(values, REGULATOR_THRESHOLD_LOW), read(values, REGULATOR_THRESHOLD_HIGH),
             read(values, REGULATOR_ISOLATED_BAND)});

    // Only exactly 1 switches sibilance suppression on.
    if (firstValue(values, REGULATOR_SIBILANCE_SUPPRESS_ENABLE) != 1) return;
    const int channels = firstValue(values, OUTPUT_CHANNELS);
    const std::vector<int>& left = read(values, REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT);
    const std::vector<int>& right = read(values, REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT);
    const int header[] = {channels, countOf(left)};
    if (channels == 4) {
        cmd.add(SFX_RSSA, {{header, 2}, left, right,
                           read(values, REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT_SURROUND),
                           read(values, REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT_SURROUND)});
    } else if (channels == 2) {
        cmd.add(SFX_RSSA, {{header, 2}, left, right});
    }
}

}  // namespace korvi
