// The effect's parameter codes and the ids they travel under.
#include <gtest/gtest.h>

#include <set>

#include "effect/SfxParameter.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

TEST(SfxParameter, CodesTravelAsLowerCasedLittleEndianIds) {
    EXPECT_EQ(sfxParameterId(SFX_DVLE), 0x656c7664);
    EXPECT_EQ(sfxParameterId(SFX_VOL), 0x006c6f76);
    EXPECT_STREQ(sfxParameterCode(SFX_DVLE), "DVLE");
    EXPECT_STREQ(sfxParameterCode(SFX_VOL), "VOL");
    EXPECT_EQ(sfxCodeToId("DVLE"), 0x656c7664);
    EXPECT_EQ(sfxCodeToId("dvle"), 0x656c7664);
    // Only ASCII upper-case letters are lowered; other bytes travel as they are.
    EXPECT_EQ(sfxCodeToId("A1_z"), 0x7a5f3161);
    EXPECT_EQ(sfxCodeToId(std::string("\xC4Q", 2)), 0x71c4);
    EXPECT_EQ(sfxCodeToId("X"), 0x78);
    EXPECT_EQ(sfxCodeToId(""), 0);
    // Too long for a word.
    EXPECT_EQ(sfxCodeToId("DVLEX"), 0);
}

// The codes themselves are held against docs/parameter-blob.md by the CodeCatalogueDoc tests.
TEST(SfxParameter, EveryIdLeadsBackToItsParameter) {
    EXPECT_EQ(kSfxParameterCount, 84);
    std::set<int32_t> ids;
    for (int i = 0; i < kSfxParameterCount; ++i) {
        const SfxParameter p = static_cast<SfxParameter>(i);
        EXPECT_EQ(sfxParameterId(p), test::codeId(sfxParameterCode(p))) << i;
        ids.insert(sfxParameterId(p));
        SfxParameter back = SFX_VOL;
        ASSERT_TRUE(sfxParameterForId(sfxParameterId(p), &back)) << i;
        EXPECT_EQ(back, p);
    }
    EXPECT_EQ(ids.size(), 84u);
    EXPECT_FALSE(sfxParameterForId(0, nullptr));
    EXPECT_FALSE(sfxParameterForId(test::codeId("ZZZZ"), nullptr));
}

TEST(SfxParameterDeathTest, AValueOutsideTheCatalogueAborts) {
    EXPECT_DEATH(sfxParameterId(static_cast<SfxParameter>(84)), "invalid SfxParameter 84");
    EXPECT_DEATH(sfxParameterCode(static_cast<SfxParameter>(84)), "invalid SfxParameter 84");
    EXPECT_DEATH(sfxParameterId(static_cast<SfxParameter>(-1)), "invalid SfxParameter -1");
}

}  // namespace
}  // namespace korvi
