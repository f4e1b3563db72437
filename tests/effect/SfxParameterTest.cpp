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
    // Only ASCII upper-case letters are lowered; other bytes travel as they are; too long is 0.
    const std::pair<std::string, int32_t> cases[] = {
        {"DVLE", 0x656c7664}, {"dvle", 0x656c7664}, {"A1_z", 0x7a5f3161}, {std::string("\xC4Q", 2), 0x71c4},
        {"X", 0x78}, {"", 0}, {"DVLEX", 0}};
    for (const auto& [code, id] : cases) EXPECT_EQ(sfxCodeToId(code), id) << code;
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
