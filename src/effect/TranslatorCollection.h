// Every translator of the effect path and the lookup from a parameter to the translator that
// reads it. The translators live for the whole process; the collection only borrows them.
#pragma once

#include <map>
#include <set>

#include "effect/Translator.h"

namespace korvi {

class TranslatorCollection {
public:
    using TranslatorSet = std::set<Translator*, TranslatorOrder>;

    // One instance of each of the twelve computing translators and one copying translator per
    // parameter that is sent unchanged (57), made once at library load and never freed.
    static const TranslatorSet kAllTranslators;

    // Built from kAllTranslators.
    TranslatorCollection();
    // Built from the given translators, in their order: each source parameter goes to the first
    // translator that lists it.
    explicit TranslatorCollection(const TranslatorSet& translators);

    // The translator that reads p, or null. Asking for a parameter no translator reads leaves a
    // null entry behind; the answer is null either way.
    Translator* getTranslator(Parameter p);

private:
    std::map<Parameter, Translator*> mTranslators;
};

}  // namespace korvi
