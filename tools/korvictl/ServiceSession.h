// One running settings service on the host, as a device would run it, with korvictl as its
// client: brings the service up over a device root, keeps a client registered, waits for the
// service's handler to catch up with queued writes, and reads what the effect received from the
// shared parameter store.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <utils/StrongPointer.h>

namespace android {
class KorviManagerService;
}

namespace korvi::ctl {

class SessionClient;

// What the effect holds: device -> parameter id -> values.
using EffectState = std::map<uint32_t, std::map<int32_t, std::vector<int32_t>>>;

// What start-up did, read before and after it.
struct StartupReport {
    int amplifierType = 0;
    std::string factoryFile;     // device path, "/vendor/etc/korvi/..."
    std::string database;        // "built", "rebuilt" or "reused"
    std::string oldSignature;    // empty when there was no database
    std::string newSignature;
    std::string formatVersion;
    std::vector<std::string> oemAdded;    // "tuning NAME" / "device ID on PORT -> NAME"
    std::vector<std::string> oemDropped;  // the service's own reason, one line each
    std::string oemNote;                  // why the OEM merge did not run, if it did not
};

class ServiceSession {
public:
    // Brings the service up over root (a directory laid out like a device), or over a scratch
    // copy of the bundled sample device root when root is empty. Null, with *error set, when
    // the root is unusable or start-up failed. echoLog lets the service's log lines through.
    static std::unique_ptr<ServiceSession> start(const std::string& root, bool echoLog,
                                                 std::string* error);
    ~ServiceSession();

    android::KorviManagerService& service() { return *mService; }
    const StartupReport& startup() const { return mStartup; }
    const std::string& root() const { return mRoot; }

    // Waits until the service's handler has handled every write queued so far, and returns the
    // notifications the client received meanwhile (its own catch-up refreshes left out). False
    // when the handler did not catch up within a few seconds.
    bool sync(std::vector<std::vector<uint8_t>>* notifications);

    // Everything the effect holds now.
    EffectState effectState() const;

private:
    ServiceSession() = default;
    bool bringUp(bool echoLog, std::string* error);

    std::string mRoot;
    std::string mScratch;  // removed at the end when not empty
    android::sp<android::KorviManagerService> mService;
    android::sp<SessionClient> mClient;
    StartupReport mStartup;
    size_t mSeen = 0;  // notifications already handed out by sync
};

// The bundled sample device root (the repository's data/ directory).
std::string bundledDeviceRoot();

}  // namespace korvi::ctl
