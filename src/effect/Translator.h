// Turns changes of the service's parameters into the effect's own entries. One translator reads
// one or more source parameters and appends one or more entries to a command. Translators keep
// no per-device state, so one instance of each serves every device.
#pragma once

#include <vector>

#include "effect/SetParamCommand.h"
#include "model/Endpoint.h"
#include "model/Parameter.h"
#include "model/ParameterValues.h"

namespace korvi {

class Translator {
public:
    virtual ~Translator() = default;
    // The parameters whose change makes this translator run, in the order it expects them.
    virtual const std::vector<Parameter>& getSrcParams() const = 0;
    // Reads the sources from values and appends this translator's entries to cmd. endpoint and
    // mono are those of the device's current tuning (OTHER and false before any tuning is set).
    virtual void sfxTranslate(SetParamCommand& cmd, ParameterValues& values, Endpoint endpoint,
                              bool mono) const = 0;

protected:
    // The value list of a parameter; an absent parameter is inserted with an empty list.
    static const std::vector<int>& read(ParameterValues& values, Parameter parameter);
    // The first value of a parameter; an absent or empty list counts as 0.
    static int firstValue(ParameterValues& values, Parameter parameter);
    // The number of values of a list, as a blob word.
    static int countOf(const std::vector<int>& list);
};

// The fixed order in which translators are kept and run: by their first source parameter, which
// no two translators share. Any fixed order would do for the effect; this one makes every blob
// reproducible from run to run.
struct TranslatorOrder {
    bool operator()(const Translator* a, const Translator* b) const;
};

}  // namespace korvi
