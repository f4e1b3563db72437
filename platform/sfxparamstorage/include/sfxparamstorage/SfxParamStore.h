// The shared parameter store: the one place where the settings service leaves the audio effect's
// parameters and where the effect (or any other reader) picks them up.
//
// Writer side: setParam() stages one parameter of one output device; commitChange() publishes
// everything staged since the previous commit in one step. Until that commit, readers see none
// of the staged values; after it, all of them. One command of the service therefore reaches
// readers whole or not at all.
//
// Reader side: getStoredParams() hands out a consistent copy of the committed parameters, per
// device, taken between two commits (never in the middle of one). See its comment for the
// version numbers that let a reader ask only for what changed since its last look.
//
// Every method may be called from any thread. There is one staging area for the whole process:
// writers are expected to stage and commit from one thread at a time (the service does all of
// it from its event-handler thread); two threads staging at once would share one commit.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <vector>

#include <utils/KeyedVector.h>
#include <utils/Singleton.h>

#include "sfxparamstorage/SfxParamCache.h"

namespace android {

class SfxParamStore : public Singleton<SfxParamStore> {
public:
    // Stages count values of parameter paramId for device; replaces a value staged earlier for
    // the same device and id. count 0 is legal (an empty value list) and values may then be null.
    // Returns 0, or -22 when values is null although count is not 0.
    int setParam(uint32_t device, int32_t paramId, const int32_t* values, uint32_t count);

    // Publishes every staged value at once and empties the staging area; the committed version
    // goes up by one. A commit with nothing staged publishes nothing and keeps the version.
    // Returns 0.
    int commitChange();

    // Fills out with a copy of the committed parameters: one newly allocated SfxParamCache per
    // device that has something to report, keyed by device. The caller owns the caches (free
    // them with releaseStoredParams). out must be empty on entry.
    //
    // version is in/out. Versions count non-empty commits: 0 for an empty store, then 1, 2, ...
    // - onlyChanged false: every committed parameter of every device is reported; the incoming
    //   *version is ignored.
    // - onlyChanged true: only parameters written by commits after the incoming *version are
    //   reported (a parameter counts as written whenever a commit carried it, even with the value
    //   it already had); devices with nothing newer are left out.
    // In both cases *version is set to the version the copy was taken at, ready for the next
    // onlyChanged call. The copy and the version always belong to the same commit.
    //
    // Returns 0; -22 (and out untouched) when out or version is null or out is not empty.
    int getStoredParams(KeyedVector<uint32_t, SfxParamCache*>* out, bool onlyChanged, int* version);

    // Deletes every cache in params (as filled by getStoredParams) and empties it.
    static void releaseStoredParams(KeyedVector<uint32_t, SfxParamCache*>* params);

    // For tests only: forgets every staged and committed value and sets the version back to 0, so
    // each test starts from an empty store. Never called by the service.
    void clear();

private:
    friend class Singleton<SfxParamStore>;
    SfxParamStore() = default;

    struct Committed {
        std::vector<int32_t> values;
        int version;  // the commit that last wrote these values
    };
    using DeviceParams = std::map<int32_t, std::vector<int32_t>>;

    std::mutex mLock;
    std::map<uint32_t, DeviceParams> mStaged;
    std::map<uint32_t, std::map<int32_t, Committed>> mCommitted;
    int mVersion = 0;
};

}  // namespace android
