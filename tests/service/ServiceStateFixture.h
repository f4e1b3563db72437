// A fixture that runs the real start-up over a temporary device root: the bundled factory tuning
// file is copied in (or a variant of it), the context manager builds the settings database and
// the service context from it, and everything is released again afterwards so that each test
// starts from its own files and an empty shared parameter store.
#pragma once

#include <gtest/gtest.h>

#include <sfxparamstorage/SfxParamStore.h>

#include <string>
#include <utility>
#include <vector>

#include "context/AxContext.h"
#include "context/AxContextManager.h"
#include "support/TempDeviceRoot.h"

namespace korvi::test {

class ServiceStateTest : public ::testing::Test {
protected:
    static constexpr const char* kFactoryXml = "vendor/etc/korvi/wem-default.xml";

    void SetUp() override { android::SfxParamStore::getInstance().clear(); }

    void TearDown() override {
        AxContextManager::getInstance().release();
        android::SfxParamStore::getInstance().clear();
    }

    // Copies the bundled factory file, with each (from, to) text replaced once, and starts.
    AxContext* start(const std::vector<std::pair<std::string, std::string>>& edits = {}) {
        mRoot.copyFromData(kFactoryXml);
        std::string xml = mRoot.read(kFactoryXml);
        for (const auto& [from, to] : edits) {
            const size_t at = xml.find(from);
            EXPECT_NE(at, std::string::npos) << from;
            if (at != std::string::npos) xml.replace(at, from.size(), to);
        }
        mRoot.write(kFactoryXml, xml);
        return restart();
    }

    // Runs the start-up again over whatever files the root holds now.
    AxContext* restart() {
        AxContextManager& manager = AxContextManager::getInstance();
        manager.release();
        AxContextManager::init_smartpa_type();
        manager.init();
        return manager.getAxContext();
    }

    // The number of commits the shared store has seen: goes up by one per non-empty send.
    static int storeVersion() {
        android::KeyedVector<uint32_t, android::SfxParamCache*> params;
        int version = 0;
        android::SfxParamStore::getInstance().getStoredParams(&params, false, &version);
        android::SfxParamStore::releaseStoredParams(&params);
        return version;
    }

    TempDeviceRoot mRoot;
};

}  // namespace korvi::test
