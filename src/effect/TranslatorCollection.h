// Every translator of the effect path and the lookup from a parameter to the translator that
// reads it. The translators live for the whole process; the collection only borrows them.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <vector>

#include "effect/Translator.h"

namespace korvi {

class TranslatorCollection {
public:
    using TranslatorSet = std::set<Translator*, TranslatorOrder>;

    // One instance of each of the twelve computing translators and one copying translator per
    // parameter that is sent unchanged (57), made once at library load and kept until exit.
    static const TranslatorSet kAllTranslators;

    // Built from kAllTranslators.
    TranslatorCollection();
    // Built from the given translators, in their order: each source parameter goes to the first
    // translator that lists it.
    explicit TranslatorCollection(const TranslatorSet& translators);

    // The translator that reads p, or null.
    Translator* getTranslator(Parameter p) const;

    // The translators are also numbered 0 .. size() - 1 in the order they were given, so that a
    // device can keep its pending work as a row of flags and run it in that fixed order.
    size_t size() const { return mOrdered.size(); }
    Translator* at(size_t index) const { return mOrdered[index]; }
    // The number of the translator that reads p, or -1 when none does.
    int indexOf(Parameter p) const;

private:
    std::vector<Translator*> mOrdered;
    // Indexed by parameter number: a change is looked up on every value that changes, so the
    // lookup is a plain array read rather than a tree walk.
    std::array<int16_t, kParameterCount> mIndexOf;
};

}  // namespace korvi
