// The service's in-memory state: the effect's on/off state, the selected profile, the working
// state of every profile (one ProfileContext each) and, for every supported port, the selected
// tuning device and its loaded Tuning. Everything is read from and written to the Provider;
// every change is announced through the AxContextChangeObservable.
//
// One mutex guards the state. Announcements are made only after it has been released, so an
// observer may call back into the context from a callback. Pointers and references handed out
// point into records owned by the Provider and stay valid until the next reload of the data.
//
// Log tag: "AxContext".
#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <utils/Mutex.h>

#include "context/AxContextChangeObservable.h"
#include "context/OnAxContextChange.h"
#include "context/ProfileContext.h"
#include "model/Endpoint.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Parameter.h"
#include "model/Port.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"

namespace korvi {

class Provider;

class AxContext {
public:
    // Every port except "other", walked in ascending order by all per-port work.
    static const std::set<Port> kSupportedPorts;

    // Reads the IEQ preset and profile counts and creates an empty ProfileContext per profile
    // id. Loads nothing. Both pointers are borrowed.
    AxContext(Provider* provider, AxContextChangeObservable* observable);
    ~AxContext();
    AxContext(const AxContext&) = delete;
    AxContext& operator=(const AxContext&) = delete;

    // Registers the observer and calls its onLoad alone (also when it was registered already).
    void registerObserver(OnAxContextChange* observer);
    void unregisterObserver(OnAxContextChange* observer);

    // Start-up load of everything, announced by onLoad. Takes no lock: it runs before any
    // client can call.
    void load();
    // Re-reads every profile, the selection and the on/off state (after a rebuild).
    void reloadAllProfile();
    // Re-chooses and reloads every port's tuning (after OEM tunings were merged); a port whose
    // device vanished goes back to its default device, persisted by the next save. It runs under
    // the context manager's lock and takes the context's lock only around each change of the
    // port maps, so getters on other threads never see them half-changed; every port's
    // announcement is made without it.
    void reloadTuning();

    // The save operations return 0 when everything reached the database, non-zero otherwise.
    // save writes every profile, the selection, the on/off state and every port's device, in one
    // transaction; the others write one aspect each.
    int save();
    int saveAxState();
    int saveAxProfile();
    int saveAxProfileSettings();

    bool getSfxOn();
    // Not persisted here.
    void setSfxOn(bool on);
    int getNumOfProfiles() const { return mNumProfiles; }
    int getNumOfIeqPresets() const { return mNumIeqPresets; }
    bool isSelected(int id) const;
    // This and every other query of the selected profile end the process, as for an unknown
    // profile id (-1), when the stored selection named no profile.
    int getSelectedProfile();
    GeqPreset* getSelectedProfileGeq();
    // For the endpoint of the port's current tuning; null (logged) when the port has no tuning.
    ProfileEndpoint* getSelectedProfileEndpoint(Port port);
    IeqPreset* getSelectedProfileIeq(Port port);
    // Null when no tuning is loaded for the port.
    Tuning* getSelectedTuning(Port port) const;
    std::string getSelectedTuningDevice(Port port) const;
    // "" (logged) for an id outside 0 ... the IEQ preset count.
    std::string getIeqPresetName(int presetId) const;
    Profile* getDefaultProfile(int id);
    Profile* getProfile(int id);
    GeqPreset* getProfileGeq(int id);
    // The selected profile's record for endpoint.
    ProfileEndpoint* getProfileEndpoint(Endpoint endpoint);
    ProfileEndpoint* getProfileEndpoint(int id, Endpoint endpoint);
    bool isProfileModified(int id);
    bool isProfileGeqModified(int id);
    bool isProfileSpecificSettingsModified(int id);

    // Not persisted until saveAxProfile or save.
    void setSelectedProfile(int id);
    void resetProfile(int id);
    void resetProfileGeq(int id);
    void setProfileParameter(int id, Parameter parameter, const std::vector<int>& values);
    void setProfileGeqParameter(int id, Parameter parameter, const std::vector<int>& values);
    void setProfileParameter(int id, Endpoint endpoint, Parameter parameter,
                             const std::vector<int>& values);

    // The values stored in the record. Reading a parameter the record lacks adds an empty entry
    // for it and returns that: an empty list means "not set".
    std::vector<int>& getProfileParameter(int id, Parameter parameter);
    // For IEQ_ID, the id of the IEQ preset in force (that of preset 0 when IEQ is off).
    std::vector<int>& getProfileParameter(int id, Endpoint endpoint, Parameter parameter);
    std::vector<int>& getProfileGeqParameter(int id, Parameter parameter);
    // An empty list (logged) when the port has no tuning.
    std::vector<int>& getSelectedTuningParameter(Port port, Parameter parameter);

    // The devices offered for the port; their order carries no meaning.
    std::vector<std::string> getAvailableTuningDevice(Port port);
    std::string getDefaultTuningDevice(Port port);
    // False when the device is not offered for the port or its tuning cannot be loaded; the
    // previous selection then stays. Not persisted until save.
    bool setSelectedTuning(Port port, const std::string& device, bool force);
    bool selectDefaultTuning(Port port);

    // For the two callers that must hold the context's lock from outside.
    android::Mutex& getLock() { return mLock; }

private:
    // Fatal for an id without a context. Caller holds the lock (or runs before clients can).
    ProfileContext* findContext(int id) const;
    // The selected profile's context; fatal when no profile is selected.
    ProfileContext* selectedContext() const;
    int selectedIdLocked() const;
    std::vector<int>& noValues();
    // The shared step of every value setter; true when the stored value changed.
    static bool setValue(ParameterValues& record, Parameter parameter,
                         const std::vector<int>& values);
    // The ports whose loaded tuning belongs to endpoint, ascending.
    std::vector<std::pair<Port, Tuning*>> portsForEndpoint(Endpoint endpoint) const;
    Tuning* tuningForQuery(Port port, const char* caller) const;
    void setIeqPresetSelection(int id, Endpoint endpoint, const std::vector<int>& values);
    int saveProfilesLocked();
    // Reloads every profile and selects the stored one; returns nothing to announce.
    void loadProfilesLocked();

    Provider* mProvider;
    AxContextChangeObservable* mObservable;
    int mNumIeqPresets;
    int mNumProfiles;
    // By profile id.
    std::map<int, std::unique_ptr<ProfileContext>> mProfileContexts;
    std::map<Port, std::string> mSelectedTuningDevice;
    std::map<Port, Tuning*> mTunings;
    bool mSfxOn = false;
    // Atomic because isSelected reads it without the lock.
    std::atomic<ProfileContext*> mSelectedContext{nullptr};
    // What a query answers for a port without a tuning: an empty list, emptied on every use.
    std::vector<int> mNoValues;
    android::Mutex mLock;
};

}  // namespace korvi
