#include "effect/ComplexEqualizerTranslator.h"

namespace korvi {

void ComplexEqualizerTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                              Endpoint /*endpoint*/, bool /*mono*/) const {
    // Only exactly 1 switches the equalizer on.
    if (firstValue(values, COMPLEX_EQUALIZER_ENABLE) != 1) return;
    const int channels = firstValue(values, OUTPUT_CHANNELS);
    const std::vector<int>& left = read(values, COMPLEX_EQUALIZER_TUNING_LEFT);
    const std::vector<int>& right = read(values, COMPLEX_EQUALIZER_TUNING_RIGHT);
    const int header[] = {channels, countOf(left)};
    if (channels == 4) {
        cmd.add(SFX_CEQT, {{header, 2}, left, right, read(values, COMPLEX_EQUALIZER_TUNING_LEFT_SURROUND),
                           read(values, COMPLEX_EQUALIZER_TUNING_RIGHT_SURROUND)});
    } else if (channels == 2) {
        cmd.add(SFX_CEQT, {{header, 2}, left, right});
    }
}

}  // namespace korvi
