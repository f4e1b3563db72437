// The settings store as the rest of the service sees it. It owns the DatabaseHelper and caches the
// records the service state works with; every record it hands out stays owned by it.
//
// Every stored record exists as rows of three kinds, told apart by their custom_name: the factory
// "default" row (written from the tuning file), the user's "custom" row (the working copy the user
// changes) and "oem" rows (added from the OEM extra tuning file). Loads read custom rows, default
// loads and resets read default rows, saves rewrite custom rows only.
//
// Every operation is virtual so that the service can run over another store. Log tag:
// "KrvDatabaseProvider".
#pragma once

#include <array>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "model/DeviceTuning.h"
#include "model/Endpoint.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Port.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"
#include "store/DatabaseState.h"
#include "store/RowKinds.h"

namespace korvi {

class DatabaseHelper;

class Provider {
public:
    static constexpr const char* kDefaultName = kDefaultRowName;
    static constexpr const char* kCustomName = kCustomRowName;
    static constexpr const char* kOemName = kOemRowName;
    // Configuration keys.
    static constexpr const char* kSignature = "signature";
    static constexpr const char* kFormatVersion = "version";
    static constexpr const char* kSelectedProfile = "Profile";
    static constexpr const char* kSfxState = "State";
    // The on/off state written when the configuration is set up. Not constant: before a rebuild
    // the context manager stores the user's current choice here so the rebuild keeps it.
    static bool kSfxStateValue;

    explicit Provider(std::unique_ptr<DatabaseHelper> helper);
    virtual ~Provider();
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;

    // Counts the profiles and IEQ presets of the factory rows and sets up the caches for them.
    // False when the database holds no profile: the service cannot run without one.
    virtual bool init();
    // Looks at the database file before start-up trusts what it reads from it: a file that
    // another process holds locked is kLocked (its content is unknown: neither rebuild it nor
    // take its missing profiles for a changed tuning file), a corrupt one is moved aside and
    // replaced by an empty database (kMovedAside: rebuild it from the factory tuning file).
    virtual DatabaseState checkDatabase();

    virtual int getSelectedProfile();
    virtual int getNumOfProfiles();
    virtual int getNumOfIeqPresets();
    virtual bool isSfxOn();
    // The tuning of a device known from loadDeviceTuningsForPort; read from the database once,
    // then answered from the cache. nullptr for an unknown device or a missing tuning.
    virtual Tuning* loadTuningForDevice(const std::string& device);
    // The device tunings of a port (0 to 6, where 6 is "other"); read once, then cached.
    virtual std::set<DeviceTuning*> loadDeviceTuningsForPort(Port port);
    // Creates the tables.
    virtual int initDatabase();
    virtual int setSfxOn(bool on);
    virtual int updateDeviceTuning(const std::string& key, const std::string& value);
    virtual Profile* loadDefaultProfile(int profileId);
    virtual int setSelectedProfile(int profileId);
    virtual std::set<ProfileEndpoint*> loadDefaultProfileEndpoints(int profileId);
    virtual std::set<ProfileEndpoint*> loadProfileEndpoints(int profileId);
    // The loads below refresh the cached record of that profile from its row and return it;
    // nullptr for a profile id outside the counted profiles.
    virtual Profile* loadProfile(int profileId);
    virtual ProfileEndpoint* loadProfileEndpoint(int profileId, Endpoint endpoint);
    virtual GeqPreset* loadGeqPreset(int profileId);
    virtual GeqPreset* loadDefaultGeqPreset(int profileId);

    // Rewrite the custom row of the record; the row keeps the record's row id.
    virtual int save(Profile* profile);
    virtual int save(ProfileEndpoint* endpoint);
    virtual int save(GeqPreset* preset);
    // Read the default row into the record (which keeps its own row id, so a later save
    // overwrites its custom row) and return it.
    virtual Profile* reset(Profile* profile);
    virtual ProfileEndpoint* reset(ProfileEndpoint* endpoint);
    virtual GeqPreset* reset(GeqPreset* preset);

    // Writes a default row.
    virtual int create(IeqPreset* preset);
    // Write a default row and then a custom row; the record ends with the custom row's id.
    virtual int create(GeqPreset* preset);
    virtual int create(Profile* profile);
    virtual int create(ProfileEndpoint* endpoint);
    // Write one row under customName (kDefaultName or kOemName).
    virtual int create(Tuning* tuning, const std::string& customName);
    virtual int create(DeviceTuning* deviceTuning, const std::string& customName);

    virtual int clearOemTunings();
    virtual int clearOemDeviceTunings();
    // Forgets the cached device tunings and tunings and reloads the device tunings of every port
    // that was cached, so the caches follow the database after the OEM rows changed. Tunings
    // handed out earlier are gone afterwards.
    virtual void reloadCachedDeviceTunings();
    virtual int clear();
    virtual int beginTransaction();
    virtual int commitTransaction();

    // Inserts the signature, the initial profile selection (0) and the on/off state.
    virtual int setDefaultXmlSignature(const std::string& signature);
    virtual std::string getDefaultXmlSignature();
    virtual int setDefaultXmlFormatVersion(const std::string& version);
    virtual std::string getDefaultXmlFormatVersion();
    // The device whose tuning is selected for a port, keyed by the port's name.
    virtual int setDeviceTuning(const std::string& key, const std::string& value);
    virtual std::string getDeviceTuning(const std::string& key);
    // The factory row of an IEQ preset; read once, then cached until the next init.
    virtual IeqPreset* loadIeqPreset(int presetId);

    // For tools and tests: the helper this store runs on.
    DatabaseHelper* getDatabaseHelper() const { return mHelper.get(); }

private:
    // One cached endpoint record per endpoint of a profile; stored tells whether its row was
    // ever found, so a missing row never shows up as an endpoint of the profile.
    struct EndpointSlot {
        std::unique_ptr<ProfileEndpoint> record;
        bool stored = false;
    };
    using EndpointSlots = std::array<EndpointSlot, kEndpointCount>;

    bool isKnownProfile(int profileId, const char* caller) const;
    Profile* loadProfileRow(std::vector<std::unique_ptr<Profile>>& cache, int profileId,
                            const char* customName, const char* caller);
    GeqPreset* loadGeqRow(std::vector<std::unique_ptr<GeqPreset>>& cache, int profileId,
                          const char* customName, const char* caller);
    std::set<ProfileEndpoint*> loadEndpointRows(std::vector<EndpointSlots>& cache, int profileId,
                                                const char* customName, const char* caller);
    bool loadEndpointRow(EndpointSlot& slot, int profileId, Endpoint endpoint,
                         const char* customName);
    const DeviceTuning* findCachedDevice(const std::string& device) const;

    std::unique_ptr<DatabaseHelper> mHelper;
    int mNumOfProfiles = 0;
    int mNumOfIeqPresets = 0;
    // Indexed by profile id.
    std::vector<std::unique_ptr<Profile>> mProfiles;
    std::vector<std::unique_ptr<Profile>> mDefaultProfiles;
    std::vector<std::unique_ptr<GeqPreset>> mGeqPresets;
    std::vector<std::unique_ptr<GeqPreset>> mDefaultGeqPresets;
    std::vector<EndpointSlots> mProfileEndpoints;
    std::vector<EndpointSlots> mDefaultEndpoints;
    // By preset id.
    std::map<int, std::unique_ptr<IeqPreset>> mIeqPresets;
    // The tunings loaded so far, by name.
    std::map<std::string, std::unique_ptr<Tuning>> mTunings;
    // The device tunings known so far, per port.
    std::map<Port, std::vector<std::unique_ptr<DeviceTuning>>> mDeviceTunings;
};

}  // namespace korvi
