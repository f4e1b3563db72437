#include "effect/OutputModeTranslator.h"

namespace korvi {

void OutputModeTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                        Endpoint endpoint, bool mono) const {
    if (endpoint != SPEAKER) {
        const int kind = static_cast<int>(endpoint);
        cmd.add(SFX_DOM, {read(values, VIRTUALIZER_ENABLE), {&kind, 1}, read(values, ORIENTATION)});
        return;
    }
    // A reference stays valid while other parameters are written below: the value map never
    // moves an entry it already holds.
    const std::vector<int>& mixMatrix = read(values, OUTPUT_MIX_MATRIX);
    if (mono) {
        // A mono internal speaker cannot virtualize and has one orientation only. The forced
        // values are written into the view itself on purpose, so that every later read of it
        // sees them for as long as the speaker stays mono.
        values.set(VIRTUALIZER_ENABLE, {0});
        values.set(ORIENTATION, {1});
    }
    const int kind = static_cast<int>(SPEAKER);
    cmd.add(SFX_DOM, {read(values, VIRTUALIZER_ENABLE), {&kind, 1}, read(values, ORIENTATION), mixMatrix});
}

}  // namespace korvi
