// The graphic-equaliser setting of one profile.
#pragma once

#include <string>

#include "model/ParameterValues.h"

namespace korvi {

class GeqPreset : public ParameterValues {
public:
    static const std::set<Parameter> kValidParams;

    explicit GeqPreset(int profileId);
    GeqPreset(int64_t id, int profileId);

    int64_t getId() const override { return mId; }
    const std::set<Parameter>& getValidParams() const override { return kValidParams; }

    int getProfileId() const { return mProfileId; }

    bool equals(const GeqPreset& other) const;

    std::string toString() const;

private:
    int mProfileId;
};

}  // namespace korvi
