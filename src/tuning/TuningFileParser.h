// Reads one tuning file (the factory file or the OEM extra file) into records: IEQ and GEQ
// presets, profiles and their endpoints, tunings and the devices that use them, handed over in a
// DeviceData. The parser owns every record it makes and the DeviceData; both are valid only while
// the parser lives, so a loader copies what it keeps before letting the parser go.
//
// Three older format families are recognised by the start of the format version ("3.2." with the
// extra defaults of "3.2.2", and "3.3.0"); any other version is read as the current format.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "model/DeviceTuning.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"
#include "tuning/DeviceData.h"
#include "tuning/SetterCollection.h"
#include "tuning/TagIterator.h"

namespace korvi {

class TuningFileParser {
public:
    // The value setters of every element name, shared by all parsers.
    static const SetterCollection sSetterCollection;

    TuningFileParser();
    // Reads path at once; the result of setTuningFile is dropped.
    explicit TuningFileParser(std::string path);
    // Frees the document, every record made and the DeviceData.
    virtual ~TuningFileParser();
    TuningFileParser(const TuningFileParser&) = delete;
    TuningFileParser& operator=(const TuningFileParser&) = delete;

    // 0 when the file was read; -22 when it cannot be opened, is malformed or has no root
    // element, leaving everything as it was. A second file adds its records to those of the
    // first; the new DeviceData holds both.
    int setTuningFile(std::string path);

    bool isParsed() const { return mParsed; }
    DeviceData* getDeviceData() const { return mDeviceData.get(); }
    int getNumOfProfiles() const { return mNumOfProfiles; }
    // "" for an id no profile had (which is then recorded with that empty name).
    std::string getProfileName(int profileId);
    // The IEQ preset id named in text: "off" 0, "balanced" 2, "warm" 3, "detailed" 1, tested in
    // this order as substrings; anything else (or a text under three characters) is 0 and logged.
    int getIeqPresetIdByName(std::string name);
    // The virtual-bass type copied into every endpoint (1 until a file sets it).
    int getVirtualBassType() const { return mVirtualBassType; }

private:
    void parseTuningFile();
    std::string parseVersion();
    void parseAuthorizedTechnologies();
    void parsePreset();
    void parseProfile();
    void parseTuning();
    void parseDeviceTuning(std::string tuningName);
    void parseProfileEndpoint(int profileId, int ieqEnable, int ieqAmount, int ieqPresetId);

    // Pushes the current node and moves to its first child element; false (nothing to walk)
    // when the element has no children. The caller pops in either case.
    bool descend();
    // Moves past text and comment nodes to the next element, if any.
    void skipNonElements();
    // Applies the setter of every element child of the current node that has one.
    void applySettersToChildren(ParameterValues& target);
    // Attribute values of the current element by name, "" for a missing one.
    std::vector<std::string> readAttributes(const std::vector<std::string>& names);

    bool isFamily32() const;
    bool isFormat322() const;
    bool isFormat330() const;

    bool mParsed = false;
    int mNumOfProfiles = 0;
    std::map<int, std::string> mProfileNames;
    std::unique_ptr<DeviceData> mDeviceData;
    int mVirtualBassType = 1;
    std::string mFormatVersion;
    std::string mToolVersion;
    // Borrowed views handed to DeviceData, ordered by address like every record set here.
    std::set<IeqPreset*> mIeqPresets;
    std::set<GeqPreset*> mGeqPresets;
    std::set<Profile*> mProfiles;
    std::set<ProfileEndpoint*> mProfileEndpoints;
    std::set<Tuning*> mTunings;
    std::set<DeviceTuning*> mDeviceTunings;
    // The owners of everything in the sets above.
    std::vector<std::unique_ptr<ParameterValues>> mOwnedRecords;
    std::vector<std::unique_ptr<DeviceTuning>> mOwnedDeviceTunings;
    TagIterator mTagIterator;
};

}  // namespace korvi
