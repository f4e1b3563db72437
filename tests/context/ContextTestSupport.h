// Helpers of the service-state tests: a device root whose settings database is built from a
// tuning file the way start-up builds it (default and custom rows of every record, one selected
// device per port), and an observer that records every announcement as one line of text.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "context/AxContext.h"
#include "context/OnAxContextChange.h"
#include "model/Port.h"
#include "store/DatabaseHelper.h"
#include "store/Provider.h"
#include "store/StoreTestSupport.h"
#include "support/TempDeviceRoot.h"
#include "tuning/DeviceData.h"
#include "tuning/TuningFileParser.h"

namespace korvi::test {

inline constexpr const char* kSampleXml = "vendor/etc/korvi/wem-default.xml";

class ContextStore {
public:
    // Runs between writing the factory rows and the provider's init: a test changes the rows
    // there (raw SQL or provider creates) before anything is cached.
    using Prepare = std::function<void(Provider&, RawDb&)>;

    explicit ContextStore(const Prepare& prepare = nullptr, const std::string& xml = kSampleXml) {
        const std::string xmlPath = mRoot.copyFromData(xml);
        mProvider = openProvider();
        {
            TuningFileParser parser(xmlPath);
            EXPECT_TRUE(parser.isParsed()) << xmlPath;
            populate(*mProvider, *parser.getDeviceData());
        }
        if (prepare) {
            RawDb db(dbPath());
            prepare(*mProvider, db);
        }
        EXPECT_TRUE(mProvider->init());
    }

    static std::unique_ptr<Provider> openProvider() {
        return std::make_unique<Provider>(std::make_unique<DatabaseHelper>("wem_sqlite3.db"));
    }

    Provider& provider() { return *mProvider; }
    TempDeviceRoot& root() { return mRoot; }
    std::string dbPath() const { return mRoot.path("data/vendor/korvi/wem_sqlite3.db"); }

private:
    static void populate(Provider& provider, DeviceData& data) {
        ASSERT_EQ(provider.beginTransaction(), 0);
        ASSERT_EQ(provider.initDatabase(), 0);
        for (IeqPreset* preset : data.getIeqPresets()) ASSERT_EQ(provider.create(preset), 0);
        for (GeqPreset* preset : data.getGeqPresets()) ASSERT_EQ(provider.create(preset), 0);
        for (Profile* profile : data.getProfiles()) ASSERT_EQ(provider.create(profile), 0);
        for (ProfileEndpoint* endpoint : data.getProfileEndpoints()) {
            ASSERT_EQ(provider.create(endpoint), 0);
        }
        for (Tuning* tuning : data.getTunings()) {
            ASSERT_EQ(provider.create(tuning, Provider::kDefaultName), 0);
        }
        for (DeviceTuning* device : data.getDeviceTunings()) {
            ASSERT_EQ(provider.create(device, Provider::kDefaultName), 0);
        }
        ASSERT_EQ(provider.setDefaultXmlSignature("test-signature"), 0);
        ASSERT_EQ(provider.setDefaultXmlFormatVersion(data.getFormatVersion()), 0);
        for (int port = 0; port < kPortCount; ++port) {
            ASSERT_EQ(provider.setDeviceTuning(kPortNames[port],
                                               std::string("default_") + kPortNames[port]),
                      0);
        }
        ASSERT_EQ(provider.commitTransaction(), 0);
    }

    TempDeviceRoot mRoot;
    std::unique_ptr<Provider> mProvider;
};

// Records every announcement as text ("onSelectedTuningChanged port=3 tuning=headphone_wired"),
// optionally also into a log shared by several observers (prefixed with the observer's name).
// Every callback also checks that the context's lock is free, since observers may call back.
class RecordingObserver : public OnAxContextChange {
public:
    explicit RecordingObserver(std::string name = "", std::vector<std::string>* shared = nullptr)
        : mName(std::move(name)), mShared(shared) {}

    std::vector<std::string> events;
    // Set when a callback found the context's lock taken.
    bool lockHeld = false;
    // Called at the end of every callback with the event's text (not when the lock was found
    // taken: calling back would then deadlock).
    std::function<void(AxContext&, const std::string&)> hook;

    std::vector<std::string> take() {
        std::vector<std::string> result;
        result.swap(events);
        return result;
    }

    void onLoad(AxContext& c) override { note(c, "onLoad"); }
    void onSfxOnChanged(AxContext& c, bool on) override {
        note(c, "onSfxOnChanged on=" + std::to_string(on));
    }
    void onSelectedProfileChanged(AxContext& c) override { note(c, "onSelectedProfileChanged"); }
    void onSelectedProfileParameterChanged(AxContext& c, Profile& profile) override {
        note(c,
             "onSelectedProfileParameterChanged profile=" + std::to_string(profile.getProfileId()));
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
        note(c, "onSelectedTuningChanged port=" + std::to_string(port) +
                    " tuning=" + tuning.getName());
    }

private:
    void note(AxContext& context, const std::string& event) {
        const bool free = context.getLock().tryLock() == 0;
        if (free) context.getLock().unlock();
        lockHeld = lockHeld || !free;
        events.push_back(event);
        if (mShared != nullptr) mShared->push_back(mName + " " + event);
        if (hook && free) hook(context, event);
    }

    std::string mName;
    std::vector<std::string>* mShared;
};

}  // namespace korvi::test
