#include "effect/ParameterTranslator.h"

#define LOG_TAG "ParameterTranslator"
#include <log/log.h>

namespace korvi {

void ParameterTranslator::setSource(ParameterValues* values, Endpoint endpoint, bool mono) {
    mSource = values;
    mEndpoint = endpoint;
    mMono = mono;
}

void ParameterTranslator::onParameterChanged(Parameter p) {
    Translator* translator = sTranslatorCollection->getTranslator(p);
    if (translator == nullptr) return;
    mPending.insert(translator);
}

void ParameterTranslator::translatePending(SetParamCommand& cmd) {
    if (!mPending.empty()) {
        LOG_ALWAYS_FATAL_IF(mSource == nullptr, "%s: translators pending without a source",
                            __func__);
        for (Translator* translator : mPending) {
            translator->sfxTranslate(cmd, *mSource, mEndpoint, mMono);
        }
    }
    mPending.clear();
}

void ParameterTranslator::translateAll(SetParamCommand& cmd) {
    if (mSource != nullptr) {
        for (const auto& entry : mSource->mValues) onParameterChanged(entry.first);
    }
    translatePending(cmd);
}

}  // namespace korvi
