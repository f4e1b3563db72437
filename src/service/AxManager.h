// The one object through which the service front reaches the service state. It borrows the
// service context from the context manager, owns the effect handle, the effect controller and the
// parameter adapter, and turns client-level requests (profiles, client parameter ids, tuning
// devices, saves) into context calls after checking the client's input.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "model/Parameter.h"
#include "model/Port.h"

namespace korvi {

class AxContext;
class ParameterAdapter;
class SfxController;
class SfxEffect;

class AxManager {
public:
    AxManager();
    // Takes the controller over and borrows the context; no effect or adapter is created.
    AxManager(std::unique_ptr<SfxController> controller, AxContext* context);
    virtual ~AxManager();

    AxManager(const AxManager&) = delete;
    AxManager& operator=(const AxManager&) = delete;

    // Obtains the context (running start-up on first use) and builds the effect side over it.
    // 0 on success; -19 when there is no context, in which case nothing is created.
    int init();

    // Effect handle.
    void createSfxEffect(int sessionId);
    bool recreateAxEffect();
    bool validateAxEffect();

    // On/off and suspension.
    void setAxOn(bool on);
    bool getAxOn();
    void setAxSuspended(bool suspended);
    bool getAxSuspended();
    std::string getAxVersion();

    // Profiles.
    int getNumOfProfiles();
    int getNumOfIeqPresets();
    bool setSelectedProfile(int id);
    bool resetProfile(int id);
    bool isProfileModified(int id);
    int getSelectedProfile();
    std::string getProfileName(int id);
    // Name length plus one; the id is not checked (an unknown id is fatal in the context).
    int getProfileNameLen(int id);
    std::string getIeqPresetName(int presetId);
    bool isMobilityProfileSelected();
    std::vector<int> getProfileParameter(int id, Parameter parameter);

    // Client parameter ids 100 and up. Setters clamp the caller's values in place.
    bool setParameter(int profileId, int paramId, std::vector<int>& values);
    std::vector<int> getParameter(int profileId, int paramId);
    int getParamLength(int paramId);
    // port is 0 ... 6 (6 is "other"); it selects the profile endpoint the value lives in.
    std::vector<int> getProfilePortParameter(int profileId, int port, int paramId);
    bool setProfilePortParameter(int profileId, int port, int paramId, std::vector<int>& values);

    // Tuning devices.
    std::vector<std::string> getAvailableTuningDevices(Port port);
    // Bytes needed to pack the names one after another, each followed by a zero byte.
    int getAvailableTuningDevicesLen(Port port);
    std::string getSelectedTuningName(Port port);
    bool setSelectedTuning(Port port, const std::string& device);

    // Tuning read-outs: the first value of one parameter of a current record (0 when empty).
    int getTuningParamDSA(Port port);
    int getTuningParamDHSA(Port port);
    int getTuningParamDFSA(Port port);
    // The spelling is part of the interface clients were built against.
    int getVolumeLevelerAount(Port port);
    bool isSpeakerPortraitMode();
    bool isMonoInternalSpeaker();

    // Saving and reloading. The saves answer the context's result: 0 when everything reached
    // the database, non-zero otherwise.
    int saveAxStateAndSettings();
    int saveAxState();
    int saveAxProfile();
    int saveAxProfileSettings();
    void restoreCurrentProfiles();
    static int reloadTuningXml();
    static std::string getDefaultXmlFormatVersion();

private:
    bool isValidProfileId(int id);
    void makeSfxEffect();
    void replaceSfxEffect();

    std::unique_ptr<SfxController> mController;
    AxContext* mContext = nullptr;  // borrowed from the context manager
    std::unique_ptr<ParameterAdapter> mAdapter;
    std::unique_ptr<SfxEffect> mEffect;
    std::atomic<bool> mSuspended{false};
    int mSessionId = 0;
    // Whether init registered the controller with the context (it must leave before it dies).
    bool mRegistered = false;
};

}  // namespace korvi
