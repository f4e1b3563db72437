#include "effect/AudioOptimizerTranslator.h"

namespace korvi {

void AudioOptimizerTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                            Endpoint /*endpoint*/, bool /*mono*/) const {
    const std::vector<int>& frequency = read(values, AUDIO_OPTIMIZER_FREQUENCY);
    const int channels = firstValue(values, OUTPUT_CHANNELS);
    // The optimizer takes the band count before the channel count, unlike the complex equalizer
    // and the sibilance suppressor.
    const int header[] = {countOf(frequency), channels};
    const std::vector<int>& left = read(values, AUDIO_OPTIMIZER_GAIN_L);
    const std::vector<int>& right = read(values, AUDIO_OPTIMIZER_GAIN_R);
    if (channels == 4) {
        cmd.add(SFX_AOBS, {{header, 2}, frequency, left, right, read(values, AUDIO_OPTIMIZER_GAIN_LS),
                           read(values, AUDIO_OPTIMIZER_GAIN_RS)});
    } else if (channels == 2) {
        cmd.add(SFX_AOBS, {{header, 2}, frequency, left, right});
    }
}

}  // namespace korvi
