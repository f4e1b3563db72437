#define LOG_TAG "ParameterValues"
#include "model/ParameterValues.h"

#include <log/log.h>

namespace korvi {

void ParameterValues::set(Parameter parameter, const std::vector<int>& values) {
    mValues[parameter] = values;
    mDirty = true;
}

bool ParameterValues::checkAndUpdate(Parameter parameter, const std::vector<int>& values) {
    if (!admits(parameter)) return false;
    std::vector<int>& current = mValues[parameter];
    if (current == values) return false;
    // The same as set(), without looking the parameter up a second time.
    current = values;
    mDirty = true;
    return true;
}

bool ParameterValues::equals(const ParameterValues& other) const {
    if (this == &other) return true;
    return mValues == other.mValues;
}

std::string ParameterValues::valuesToString() const {
    std::string text;
    for (const auto& [parameter, values] : mValues) {
        LOG_ALWAYS_FATAL_IF(!isValidParameter(parameter), "%s: invalid parameter number %d",
                            __func__, static_cast<int>(parameter));
        if (parameter == IEQ_ID) continue;
        text += kParameterNames[parameter];
        text += '=';
        for (int v : values) {
            text += std::to_string(v);
            text += ',';
        }
        text += '\n';
    }
    return text;
}

}  // namespace korvi
