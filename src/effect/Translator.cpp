#include "effect/Translator.h"

#include "effect/CheckedCount.h"

namespace korvi {

const std::vector<int>& Translator::read(ParameterValues& values, Parameter parameter) {
    return values.mValues[parameter];
}

int Translator::firstValue(ParameterValues& values, Parameter parameter) {
    const std::vector<int>& list = read(values, parameter);
    return list.empty() ? 0 : list.front();
}

int Translator::countOf(const std::vector<int>& list) {
    return checkedCount(0, list.size());
}

bool TranslatorOrder::operator()(const Translator* a, const Translator* b) const {
    return a->getSrcParams().front() < b->getSrcParams().front();
}

}  // namespace korvi
