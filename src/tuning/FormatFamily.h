// How a tuning file is read depends on its format version: three older families are recognised
// by the start of the version ("3.2." with the extra defaults of "3.2.2", and "3.3.0"); any other
// version is read as the current format. The reader, the lint and the report all ask here.
#pragma once

#include <string>

namespace korvi {

class FormatFamily {
public:
    // The IEQ preset names of the formats that name presets by text, indexed by preset id.
    static constexpr const char* kIeqPresetNames[] = {"off", "detailed", "balanced", "warm"};

    explicit FormatFamily(const std::string& formatVersion) : mVersion(formatVersion) {}

    bool is32() const { return startsWith("3.2."); }
    bool is322() const { return startsWith("3.2.2"); }
    bool is330() const { return startsWith("3.3.0"); }
    // Presets and includes name IEQ presets by text (3.2 family and 3.3.0), not by number.
    bool namesIeqPresetsByText() const { return is32() || is330(); }
    // "current", "3.2", "3.2.2" or "3.3.0".
    std::string name() const {
        if (is322()) return "3.2.2";
        if (is32()) return "3.2";
        if (is330()) return "3.3.0";
        return "current";
    }

private:
    bool startsWith(const char* prefix) const {
        return mVersion.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
    }

    std::string mVersion;
};

}  // namespace korvi
