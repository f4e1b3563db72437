// Every value setter of the tuning file, one per element name, and the lookup by name.
#pragma once

#include <map>
#include <set>
#include <string>

#include "tuning/ValueSetter.h"

namespace korvi {

class SetterCollection {
public:
    // All 81 setters, built once at library load and never freed.
    static const std::set<ValueSetter*>& kAllValueSetters;

    // Maps each setter's element name to it; a later setter with a name already taken does not
    // replace the first.
    SetterCollection();

    // The setter of an element name, or null when the name has none (every time it is asked).
    ValueSetter* getValueSetter(const std::string& name) const;

    // Number of element names with a setter.
    size_t size() const { return mSetters.size(); }

private:
    // Built on first use, so a collection constructed during library load finds it complete.
    static const std::set<ValueSetter*>& allValueSetters();

    std::map<std::string, ValueSetter*> mSetters;
};

}  // namespace korvi
