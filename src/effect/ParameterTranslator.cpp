#define LOG_TAG "ParameterTranslator"

#include "effect/ParameterTranslator.h"

#include <log/log.h>

namespace korvi {

void ParameterTranslator::setSource(ParameterValues* values, Endpoint endpoint, bool mono) {
    mSource = values;
    mEndpoint = endpoint;
    mMono = mono;
}

void ParameterTranslator::onParameterChanged(Parameter p) {
    const int index = sTranslatorCollection->indexOf(p);
    if (index < 0) return;
    uint64_t& word = mPending[static_cast<size_t>(index) / 64];
    const uint64_t bit = uint64_t{1} << (index % 64);
    if ((word & bit) != 0) return;
    word |= bit;
    ++mPendingCount;
}

void ParameterTranslator::translatePending(SetParamCommand& cmd) {
    if (mPendingCount == 0) return;
    LOG_ALWAYS_FATAL_IF(mSource == nullptr, "%s: translators pending without a source", __func__);
    for (size_t w = 0; w < mPending.size(); ++w) {
        uint64_t bits = mPending[w];
        mPending[w] = 0;
        while (bits != 0) {
            const size_t index = w * 64 + static_cast<size_t>(__builtin_ctzll(bits));
            bits &= bits - 1;
            sTranslatorCollection->at(index)->sfxTranslate(cmd, *mSource, mEndpoint, mMono);
        }
    }
    mPendingCount = 0;
}

void ParameterTranslator::translateAll(SetParamCommand& cmd) {
    if (mSource != nullptr) {
        // Room for every value plus an entry header per parameter: about what the view's entries
        // take, so a full send grows the blob once per device at most.
        size_t words = 0;
        for (const auto& [parameter, list] : mSource->mValues) {
            onParameterChanged(parameter);
            words += 3 + list.size();
        }
        cmd.reserve(words);
    }
    translatePending(cmd);
}

}  // namespace korvi
