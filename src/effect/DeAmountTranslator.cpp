#include "effect/DeAmountTranslator.h"

namespace korvi {

namespace {
// The effect takes dialog enhancer amounts up to 12; larger stored amounts are sent as 12.
constexpr int kMaxDialogEnhancerAmount = 12;
}  // namespace

void DeAmountTranslator::sfxTranslate(SetParamCommand& cmd, ParameterValues& values,
                                      Endpoint /*endpoint*/, bool /*mono*/) const {
    // A copy: the clamp applies to what is sent, never to the stored amount.
    std::vector<int> amount = read(values, DIALOG_ENHANCER_AMOUNT);
    if (!amount.empty() && amount.front() > kMaxDialogEnhancerAmount) {
        amount.front() = kMaxDialogEnhancerAmount;
    }
    cmd.add(SFX_DEA, {amount});
}

}  // namespace korvi
