#include "effect/TranslatorCollection.h"

namespace korvi {

TranslatorCollection::TranslatorCollection() : TranslatorCollection(kAllTranslators) {}

TranslatorCollection::TranslatorCollection(const TranslatorSet& translators)
    : mOrdered(translators.begin(), translators.end()) {
    mIndexOf.fill(-1);
    for (size_t i = 0; i < mOrdered.size(); ++i) {
        for (Parameter p : mOrdered[i]->getSrcParams()) {
            // A parameter listed by two translators stays with the first.
            if (isValidParameter(p) && mIndexOf[p] < 0) mIndexOf[p] = static_cast<int16_t>(i);
        }
    }
}

int TranslatorCollection::indexOf(Parameter p) const {
    return isValidParameter(p) ? mIndexOf[p] : -1;
}

Translator* TranslatorCollection::getTranslator(Parameter p) const {
    const int index = indexOf(p);
    return index < 0 ? nullptr : mOrdered[static_cast<size_t>(index)];
}

}  // namespace korvi
