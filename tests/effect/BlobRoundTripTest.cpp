// Every blob the effect path builds, whatever the views hold, is one the store's validator
// accepts, and the store's parser gives back exactly the entries that were added.
#include <gtest/gtest.h>

#include <sfxparamstorage/EffectParamParser.h>

#include <random>

#include "effect/ParameterTranslator.h"
#include "model/DeviceParameters.h"
#include "model/ProfileParameters.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

struct Entry {
    int32_t device;
    int32_t id;
    std::vector<int32_t> values;
    bool operator==(const Entry& o) const { return device == o.device && id == o.id && values == o.values; }
};

// The entries as the blob lays them out, read here by hand.
std::vector<Entry> entriesByHand(const std::vector<int>& blob) {
    std::vector<Entry> out;
    size_t pos = 2;
    while (pos < blob.size()) {
        const int n = blob[pos + 2];
        out.push_back({blob[pos], blob[pos + 1],
                       std::vector<int32_t>(blob.begin() + pos + 3, blob.begin() + pos + 3 + n)});
        pos += 3 + n;
    }
    return out;
}

std::vector<Entry> entriesByParser(const std::vector<int>& blob) {
    android::EffectParamParser parser(blob.data(), static_cast<uint32_t>(blob.size() * sizeof(int)));
    EXPECT_TRUE(parser.validate()) << parser.error();
    std::vector<Entry> out;
    parser.begin();
    int32_t device = 0;
    int32_t id = 0;
    uint32_t count = 0;
    const int32_t* values = nullptr;
    while (parser.next(&device, &id, &count, &values)) {
        out.push_back({device, id, count == 0 ? std::vector<int32_t>{} : std::vector<int32_t>(values, values + count)});
    }
    return out;
}

// A random value list: often empty or short, sometimes long, values of any sign.
std::vector<int> randomList(std::mt19937& rng) {
    std::uniform_int_distribution<int> lengthPick(0, 9);
    const int pick = lengthPick(rng);
    const int length = pick < 2 ? 0 : pick < 7 ? 1 : pick * 4;
    std::uniform_int_distribution<int> value(-20, 20);
    std::vector<int> list(length);
    for (int& v : list) v = value(rng);
    return list;
}

TEST(BlobRoundTrip, RandomViewsAlwaysGiveBlobsTheStoreAccepts) {
    std::mt19937 rng(20261122);
    std::uniform_int_distribution<int> endpointPick(0, 2);
    std::uniform_int_distribution<int> coin(0, 1);
    size_t totalEntries = 0;
    for (int round = 0; round < 300; ++round) {
        ParameterTranslator profileTranslator;
        ParameterTranslator deviceTranslator;
        ProfileParameters profileView(&profileTranslator);
        DeviceParameters deviceView(&deviceTranslator);
        Tuning tuning("t", static_cast<Endpoint>(endpointPick(rng)), coin(rng) == 1);
        Profile profile(1, "p", false);
        for (int p = 0; p < kParameterCount; ++p) {
            if (coin(rng)) tuning.set(static_cast<Parameter>(p), randomList(rng));
            if (coin(rng)) profile.set(static_cast<Parameter>(p), randomList(rng));
        }
        deviceView.setTuning(tuning);
        profileView.setProfile(profile);

        SetParamCommand cmd(0x40000000);
        cmd.setDeviceId(0x40000000);
        if (coin(rng)) profileTranslator.translatePending(cmd); else profileTranslator.translateAll(cmd);
        cmd.setDeviceId(0x2);
        if (coin(rng)) deviceTranslator.translatePending(cmd); else deviceTranslator.translateAll(cmd);

        test::RecordingEffect effect;
        cmd.execute(effect);
        if (cmd.getEntryCount() == 0) {
            EXPECT_TRUE(effect.blobs.empty());
            continue;
        }
        ASSERT_EQ(effect.blobs.size(), 1u);
        const std::vector<int>& blob = effect.blobs[0];
        EXPECT_EQ(blob[1], cmd.getEntryCount());
        const std::vector<Entry> byHand = entriesByHand(blob);
        EXPECT_EQ(byHand.size(), static_cast<size_t>(cmd.getEntryCount()));
        EXPECT_TRUE(entriesByParser(blob) == byHand) << "round " << round;
        totalEntries += byHand.size();
    }
    // The rounds really produced entries to check.
    EXPECT_GT(totalEntries, 1000u);
}

}  // namespace
}  // namespace korvi
