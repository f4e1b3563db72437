#include "effect/TranslatorCollection.h"

namespace korvi {

TranslatorCollection::TranslatorCollection() : TranslatorCollection(kAllTranslators) {}

TranslatorCollection::TranslatorCollection(const TranslatorSet& translators) {
    for (Translator* translator : translators) {
        for (Parameter p : translator->getSrcParams()) mTranslators.emplace(p, translator);
    }
}

Translator* TranslatorCollection::getTranslator(Parameter p) {
    return mTranslators[p];
}

}  // namespace korvi
