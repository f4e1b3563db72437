#include "effect/DeAmountTranslator.h"

#include <algorithm>

namespace korvi {

namespace {
// The effect takes dialog enhancer amounts up to 12; larger stored amounts are sent as 12.
constexpr int kMaxDialogEnhancerAmount = 12;
}  // namespace

void DeAmountTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                      Endpoint /*endpoint*/, bool /*mono*/) const {
    const std::vector<int>& amount = read(values, DIALOG_ENHANCER_AMOUNT);
    if (amount.empty()) {
        cmd.add(SFX_DEA, {amount});
        return;
    }
    // Only the first value is clamped, and only in what is sent: the stored amount stays.
    const int first = std::min(amount.front(), kMaxDialogEnhancerAmount);
    cmd.add(SFX_DEA, {{&first, 1}, {amount.data() + 1, amount.size() - 1}});
}

}  // namespace korvi
