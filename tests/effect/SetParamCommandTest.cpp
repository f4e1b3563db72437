// Building the parameter blob entry by entry, and sending it.
#include <gtest/gtest.h>

#include <climits>

#include "effect/CheckedCount.h"
#include "effect/SetParamCommand.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

using test::entry;
using test::RecordingEffect;

TEST(SetParamCommand, EachAddFormLaysOutItsEntry) {
    SetParamCommand cmd(0x40000000);
    EXPECT_EQ(cmd.getDeviceId(), -1);
    EXPECT_EQ(cmd.getBlob(), (std::vector<int>{0x40000000, 0}));
    // Before any device is set, entries carry -1.
    cmd.add(SFX_VOL, 7);
    cmd.setDeviceId(0x8);
    const std::vector<int> three{1, -2, 3};
    cmd.add(SFX_GEBS, &three);
    const std::vector<int> none;
    cmd.add(SFX_VCBF, &none);
    const std::vector<int> a{1, 2, 3, 4, 5};
    const std::vector<int> b{6, 7, 8, 9, 10};
    cmd.add(SFX_VBSF, {a, none, b});
    cmd.add(SFX_IEBS, 5, {a, b});
    cmd.add(SFX_ARBS, 0, {});
    EXPECT_EQ(cmd.getEntryCount(), 6);

    std::vector<int> expected{0x40000000, 0};
    for (const auto& e : {entry(-1, "VOL", {7}), entry(8, "GEBS", {1, -2, 3}), entry(8, "VCBF", {}),
                          entry(8, "VBSF", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}),
                          entry(8, "IEBS", {5, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}),
                          entry(8, "ARBS", {0})}) {
        expected.insert(expected.end(), e.begin(), e.end());
    }
    // The entry count reaches word 1 when the command is sent.
    EXPECT_EQ(cmd.getBlob(), expected);
    RecordingEffect effect;
    EXPECT_EQ(cmd.execute(effect), -22);
    expected[1] = 6;
    EXPECT_EQ(effect.blobs, std::vector<std::vector<int>>{expected});
    EXPECT_EQ(effect.sizes, std::vector<unsigned>{static_cast<unsigned>(expected.size() * sizeof(int))});
    // A command without entries sends nothing.
    EXPECT_EQ(SetParamCommand(2).execute(effect), 0);
    EXPECT_EQ(effect.blobs.size(), 1u);
}

TEST(SetParamCommandDeathTest, ProgrammingErrorsAbort) {
    SetParamCommand cmd(2);
    EXPECT_DEATH(cmd.add(static_cast<SfxParameter>(84), 1), "invalid SfxParameter 84");
    EXPECT_DEATH(cmd.add(static_cast<SfxParameter>(99), {}), "invalid SfxParameter 99");
    EXPECT_DEATH(cmd.add(SFX_DVLE, static_cast<const std::vector<int>*>(nullptr)), "null value list");
    // Nothing of an aborted entry reaches the blob of the surviving process.
    EXPECT_EQ(cmd.getBlob(), (std::vector<int>{2, 0}));
    EXPECT_EQ(cmd.getEntryCount(), 0);
}

TEST(CheckedCountDeathTest, CountsThatDoNotFitIn32BitsAbort) {
    EXPECT_EQ(checkedCount(1, 10), 11);
    EXPECT_EQ(checkedCount(INT32_MAX - 5, 5), INT32_MAX);
    EXPECT_EQ(checkedCount(0, static_cast<size_t>(INT32_MAX)), INT32_MAX);
    EXPECT_DEATH(checkedCount(INT32_MAX, 1), "count overflow");
    EXPECT_DEATH(checkedCount(1, static_cast<size_t>(INT32_MAX)), "count overflow");
    EXPECT_DEATH(checkedCount(0, SIZE_MAX), "count overflow");
    EXPECT_DEATH(checkedCount(-1, 0), "negative");
}

}  // namespace
}  // namespace korvi
