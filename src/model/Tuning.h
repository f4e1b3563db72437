// A device tuning: the factory-supplied sound characteristics of one output, from the tuning file.
#pragma once

#include <map>
#include <string>

#include "model/Endpoint.h"
#include "model/ParameterValues.h"

namespace korvi {

class Tuning : public ParameterValues {
public:
    static const std::set<Parameter> kValidParams;
    static const std::map<std::string, Endpoint> kEndpNameToEndpoint;

    // A tuning made in memory is always read-only.
    Tuning(const std::string& name, Endpoint endpoint, bool mono);
    Tuning(int64_t id, const std::string& name, Endpoint endpoint, bool mono, bool readonly);

    int64_t getId() const override { return mId; }
    const std::set<Parameter>& getValidParams() const override { return kValidParams; }

    const std::string& getName() const { return mName; }
    Endpoint getEndpoint() const { return mEndpoint; }
    bool isMono() const { return mMono; }
    bool isReadonly() const { return mReadonly; }

    // Neither setter marks the record dirty, on purpose: they are applied while a tuning is read.
    void setMono(bool mono) { mMono = mono; }
    // Leaves the endpoint unchanged when name is not "speaker", "headphone" or "other".
    void setEndpoint(const std::string& name);

    std::string toString() const;

private:
    std::string mName;
    Endpoint mEndpoint;
    bool mMono;
    bool mReadonly;
};

}  // namespace korvi
