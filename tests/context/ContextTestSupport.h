// Helpers of the service-state tests: a device root whose settings database is built from a
// tuning file the way start-up builds it, an observer that records every announcement as text,
// and the log lines of one tag as "<priority letter> <message>".
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "context/AxContext.h"
#include "context/OnAxContextChange.h"
#include "model/Port.h"
#include "store/DatabaseHelper.h"
#include "store/Provider.h"
#include "store/StoreTestSupport.h"
#include "support/LogCapture.h"
#include "support/TempDeviceRoot.h"
#include "tuning/TuningFileParser.h"

namespace korvi::test {

using Events = std::vector<std::string>;
using Values = std::vector<int>;

inline Events logLines(const LogCapture& logs, const std::string& tag) {
    Events lines;
    for (const LogLine& line : logs.linesWithTag(tag)) {
        lines.push_back(std::string(1, "??VDIWEF"[line.priority & 7]) + " " + line.message);
    }
    return lines;
}

// Default and custom rows of every record, one "default_<port>" device selected per port.
class ContextStore {
public:
    // Runs between writing the factory rows and the provider's init.
    using Prepare = std::function<void(Provider&, RawDb&)>;

    explicit ContextStore(const Prepare& prepare = nullptr) {
        const std::string xmlPath = mRoot.copyFromData("vendor/etc/korvi/wem-default.xml");
        mProvider = std::make_unique<Provider>(std::make_unique<DatabaseHelper>("wem_sqlite3.db"));
        TuningFileParser parser(xmlPath);
        EXPECT_TRUE(parser.isParsed());
        populate(*mProvider, *parser.getDeviceData());
        if (prepare) {
            RawDb db(dbPath());
            prepare(*mProvider, db);
        }
        EXPECT_TRUE(mProvider->init());
    }
    Provider& provider() { return *mProvider; }
    std::string dbPath() const { return mRoot.path("data/vendor/korvi/wem_sqlite3.db"); }

private:
    static void populate(Provider& p, DeviceData& data) {
        ASSERT_EQ(p.beginTransaction() | p.initDatabase(), 0);
        int result = 0;
        for (auto* preset : data.getIeqPresets()) result |= p.create(preset);
        for (auto* preset : data.getGeqPresets()) result |= p.create(preset);
        for (auto* profile : data.getProfiles()) result |= p.create(profile);
        for (auto* endpoint : data.getProfileEndpoints()) result |= p.create(endpoint);
        for (auto* tuning : data.getTunings()) result |= p.create(tuning, Provider::kDefaultName);
        for (auto* device : data.getDeviceTunings()) {
            result |= p.create(device, Provider::kDefaultName);
        }
        result |= p.setDefaultXmlSignature("test-signature");
        result |= p.setDefaultXmlFormatVersion(data.getFormatVersion());
        for (int port = 0; port < kPortCount; ++port) {
            result |= p.setDeviceTuning(kPortNames[port], std::string("default_") + kPortNames[port]);
        }
        ASSERT_EQ(result | p.commitTransaction(), 0);
    }

    TempDeviceRoot mRoot;
    std::unique_ptr<Provider> mProvider;
};

// Records every announcement ("onSelectedTuningChanged port=3 tuning=headphone_wired") into its
// own list or a shared one (then prefixed with its name). Every callback checks that the
// context's lock is free, since observers may call back, and then runs the hook.
class RecordingObserver : public OnAxContextChange {
public:
    explicit RecordingObserver(const std::string& name = "", Events* log = nullptr)
        : mPrefix(name.empty() ? "" : name + " "), mLog(log != nullptr ? log : &events) {}

    Events events;
    bool lockHeld = false;
    std::function<void(AxContext&, const std::string&)> hook;

    Events take() { return std::exchange(*mLog, {}); }

    void onLoad(AxContext& c) override { note(c, "onLoad"); }
    void onSfxOnChanged(AxContext& c, bool on) override {
        note(c, "onSfxOnChanged on=" + std::to_string(on));
    }
    void onSelectedProfileChanged(AxContext& c) override { note(c, "onSelectedProfileChanged"); }
    void onSelectedProfileParameterChanged(AxContext& c, Profile& p) override {
        note(c, "onSelectedProfileParameterChanged profile=" + std::to_string(p.getProfileId()));
    }
    void onSelectedProfileEndpointChanged(AxContext& c, Port port, ProfileEndpoint& e) override {
        note(c, "onSelectedProfileEndpointChanged port=" + std::to_string(port) +
                    " endpoint=" + std::to_string(e.getEndpoint()) +
                    " profile=" + std::to_string(e.getProfileId()));
    }
    void onSelectedProfileIeqChanged(AxContext& c, Port port, IeqPreset& preset) override {
        note(c, "onSelectedProfileIeqChanged port=" + std::to_string(port) +
                    " preset=" + std::to_string(preset.getPresetId()));
    }
    void onSelectedProfileGeqChanged(AxContext& c, GeqPreset& preset) override {
        note(c, "onSelectedProfileGeqChanged profile=" + std::to_string(preset.getProfileId()));
    }
    void onSelectedTuningChanged(AxContext& c, Port port, Tuning& tuning) override {
        note(c, "onSelectedTuningChanged port=" + std::to_string(port) + " tuning=" +
                    tuning.getName());
    }

private:
    // Probes the context's lock with a try-lock, which the thread-safety analysis cannot follow.
    void note(AxContext& context, const std::string& event) NO_THREAD_SAFETY_ANALYSIS {
        const bool free = context.getLock().tryLock() == 0;
        if (free) context.getLock().unlock();
        lockHeld = lockHeld || !free;
        mLog->push_back(mPrefix + event);
        if (hook && free) hook(context, event);
    }

    std::string mPrefix;
    Events* mLog;
};

}  // namespace korvi::test
