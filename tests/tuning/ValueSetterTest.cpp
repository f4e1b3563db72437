// Value setters: every setter of the collection found by its name and filling its own parameter,
// and each setter class on real elements read from a file.
#include <gtest/gtest.h>

#include <algorithm>

#include "model/Tuning.h"
#include "support/TempDeviceRoot.h"
#include "tuning/SetterCollection.h"

namespace korvi {
namespace {

using test::TempDeviceRoot;
using Values = std::vector<int>;
using ValueMap = std::map<Parameter, Values>;

// Reads one element, written indented below a root, and applies the setter of its name to a
// fresh record that starts clean. The cursor must be back on the element afterwards.
class SetterFixture : public ::testing::Test {
protected:
    // Returns the record's values; fails the test when the element has no setter.
    std::map<Parameter, Values> apply(const std::string& element, bool* dirty = nullptr) {
        std::string path = mRoot.write("setter.xml", "<root>\n    " + element + "\n</root>\n");
        TagIterator it;
        EXPECT_EQ(it.init(path), 0);
        while (it.isCurValid() && !it.isElementNode()) it.next();
        const std::string name = it.getNodeName();
        const ValueSetter* setter = mCollection.getValueSetter(name);
        EXPECT_NE(setter, nullptr) << name;
        Tuning record("t", SPEAKER, false);
        record.setDirty(false);
        if (setter == nullptr) return {};
        setter->set(record, it);
        EXPECT_EQ(it.getNodeName(), name) << "cursor not back on the element";
        if (dirty != nullptr) *dirty = record.isDirty();
        return record.mValues;
    }

    TempDeviceRoot mRoot;
    SetterCollection mCollection;
};

// The column a value element fills is its name with '_' for '-', apart from one element.
std::string columnOf(std::string element) {
    if (element == "virtual-bass-process-enable") return "virtual_bass_enable";
    std::replace(element.begin(), element.end(), '-', '_');
    return element;
}

// Every setter is found by its own name, and every simple and row setter fills the parameter its
// name stands for; the element names themselves are checked against the sample files.
TEST_F(SetterFixture, EveryNameFillsItsOwnParameterAndNothingElseHasASetter) {
    EXPECT_EQ(SetterCollection::kAllValueSetters.size(), 81u);
    EXPECT_EQ(mCollection.size(), 81u);
    EXPECT_EQ(mCollection.getValueSetter("no-such-element"), nullptr);
    EXPECT_EQ(mCollection.getValueSetter("no-such-element"), nullptr);
    EXPECT_EQ(mCollection.getValueSetter("endpoint_type"), nullptr);
    EXPECT_EQ(mCollection.getValueSetter("Ieq-enable"), nullptr);
    EXPECT_EQ(mCollection.size(), 81u);
    // Multi-parameter setters list their parameters in attribute order, not parameter order.
    EXPECT_EQ(mCollection.getValueSetter("audio-optimizer-bands")->getParameters(),
              (std::vector<Parameter>{AUDIO_OPTIMIZER_FREQUENCY, AUDIO_OPTIMIZER_GAIN_L, AUDIO_OPTIMIZER_GAIN_R,
                                      AUDIO_OPTIMIZER_GAIN_LS, AUDIO_OPTIMIZER_GAIN_RS}));
    EXPECT_EQ(mCollection.getValueSetter("regulator-tuning")->getParameters(),
              (std::vector<Parameter>{REGULATOR_FREQUENCY, REGULATOR_THRESHOLD_LOW, REGULATOR_THRESHOLD_HIGH,
                                      REGULATOR_ISOLATED_BAND}));
    EXPECT_EQ(mCollection.getValueSetter("virtual-bass-mix-freqs")->getParameters(),
              (std::vector<Parameter>{VIRTUAL_BASS_MIX_FREQ_LOW, VIRTUAL_BASS_MIX_FREQ_HIGH}));
    int simple = 0;
    int rows = 0;
    for (ValueSetter* setter : SetterCollection::kAllValueSetters) {
        const std::string name = setter->getNodeName();
        EXPECT_EQ(mCollection.getValueSetter(name), setter);
        const bool isSimple = dynamic_cast<SimpleValueSetter*>(setter) != nullptr;
        const bool isRow = dynamic_cast<RowDataValueSetter*>(setter) != nullptr &&
                           dynamic_cast<DrcRowDataValueSetter*>(setter) == nullptr;
        if (!isSimple && !isRow) continue;
        bool dirty = false;
        auto values = apply("<" + name + (isSimple ? " value=\"-17\"/>" : " value=\"3, -4,5 6\"/>"), &dirty);
        ASSERT_EQ(values.size(), 1u) << name;
        EXPECT_EQ(kParameterNames[values.begin()->first], columnOf(name));
        EXPECT_EQ(values.begin()->second, isSimple ? Values{-17} : (Values{3, -4, 5, 6})) << name;
        EXPECT_TRUE(dirty) << name;
        ++(isSimple ? simple : rows);
    }
    EXPECT_EQ(simple, 58);
    EXPECT_EQ(rows, 14);
}

TEST_F(SetterFixture, SimpleRowAndDrcSettersReadTheirAttributes) {
    const std::pair<const char*, ValueMap> kCases[] = {
            {R"(<volume-leveler-enable value="true"/>)", {{VOLUME_LEVELER_ENABLE, {1}}}},
            {R"(<volume-leveler-enable value="7"/>)", {{VOLUME_LEVELER_ENABLE, {7}}}},
            {R"(<volume-leveler-enable/>)", {{VOLUME_LEVELER_ENABLE, {0}}}},
            {R"(<volume-leveler-enable value="false"/>)", {{VOLUME_LEVELER_ENABLE, {0}}}},
            {R"(<volume-leveler-enable value="True"/>)", {{VOLUME_LEVELER_ENABLE, {0}}}},
            {R"(<peak-value other="3" value=" 12dB"/>)", {{PEAK_VALUE, {12}}}},
            // Rows come from the first attribute; without one an empty row is stored.
            {R"(<virtual-bass-hybgains first="-32, -48" second="9"/>)", {{VIRTUAL_BASS_HYBGAINS, {-32, -48}}}},
            {R"(<bass-mbdrc-tuning value="1,2,x,4"/>)", {{BASS_MBDRC_TUNING, {1, 2}}}},
            // The DRC row is never empty.
            {R"(<drc-metadata value="1, 0, 0, 0"/>)", {{CUSTOM_DRC_METADATA, {1, 0, 0, 0}}}},
            {R"(<drc-metadata/>)", {{CUSTOM_DRC_METADATA, {0}}}},
            {R"(<drc-metadata value="none"/>)", {{CUSTOM_DRC_METADATA, {0}}}},
    };
    for (const auto& [element, expected] : kCases) EXPECT_EQ(apply(element), expected) << element;
    bool dirty = false;
    EXPECT_EQ(apply(R"(<virtual-bass-hybgains/>)", &dirty), (ValueMap{{VIRTUAL_BASS_HYBGAINS, {}}}));
    EXPECT_TRUE(dirty);
}

TEST_F(SetterFixture, VirtualBassPairsAndSubgains) {
    EXPECT_EQ(apply(R"(<virtual-bass-mix-freqs frequency_high="300" frequency_low="80"/>)"),
              (ValueMap{{VIRTUAL_BASS_MIX_FREQ_LOW, {80}}, {VIRTUAL_BASS_MIX_FREQ_HIGH, {300}}}));
    EXPECT_EQ(apply(R"(<virtual-bass-src-freqs frequency_low="35" frequency_high="160"/>)"),
              (ValueMap{{VIRTUAL_BASS_SRC_FREQ_LOW, {35}}, {VIRTUAL_BASS_SRC_FREQ_HIGH, {160}}}));
    // A frequency the element lacks is not stored at all.
    EXPECT_EQ(apply(R"(<virtual-bass-src-freqs frequency_high="160"/>)"), (ValueMap{{VIRTUAL_BASS_SRC_FREQ_HIGH, {160}}}));
    EXPECT_EQ(apply(R"(<virtual-bass-src-freqs/>)"), ValueMap{});
    EXPECT_EQ(apply(R"(<virtual-bass-subgains second="-64" third="-128" fourth="x"/>)"),
              (ValueMap{{VIRTUAL_BASS_SUBGAINS, {-64, -128, 0}}}));
}

TEST_F(SetterFixture, CurvesReadTheirBandsThreeLevelsDown) {
    auto values = apply(R"(<ieq>
        <data>
            <ieq-bands count="3">
                <band_ieq frequency="47" target="13"/>
                <!-- a comment between bands -->
                <band_other frequency="99" target="99"/>
                <band_ieq target="-4" frequency="141"/>
                <band_ieq frequency="234" target="7"/>
            </ieq-bands>
        </data>
    </ieq>)");
    EXPECT_EQ(values, (ValueMap{{IEQ_FREQUENCY, {47, 141, 234}}, {IEQ_TARGET, {13, -4, 7}}}));

    // GEQ takes every element there, whatever its name.
    values = apply(R"(<geq>
        <data>
            <geq-bands>
                <band_geq frequency="47" gain="64"/>
                <!-- comments add nothing -->
                <anything gain="-576" frequency="141"/>
            </geq-bands>
        </data>
    </geq>)");
    EXPECT_EQ(values, (ValueMap{{GEQ_FREQUENCY, {47, 141}}, {GEQ_GAIN, {64, -576}}}));
}

TEST_F(SetterFixture, BandSettersFillOneParameterPerAttributeName) {
    auto values = apply(R"(<audio-optimizer-bands>
        <band frequency="47" gain_left="1" gain_right="2" gain_left_surround="3" gain_right_surround="4"/>
        <band gain_right_surround="14" gain_left_surround="13" gain_right="12" gain_left="11" frequency="141"/>
        <band frequency="234"/>
    </audio-optimizer-bands>)");
    EXPECT_EQ(values, (ValueMap{{AUDIO_OPTIMIZER_FREQUENCY, {47, 141, 234}}, {AUDIO_OPTIMIZER_GAIN_L, {1, 11, 0}},
                                {AUDIO_OPTIMIZER_GAIN_R, {2, 12, 0}}, {AUDIO_OPTIMIZER_GAIN_LS, {3, 13, 0}},
                                {AUDIO_OPTIMIZER_GAIN_RS, {4, 14, 0}}}));

    // A regulator band is isolated only for the exact text "true".
    values = apply(R"(<regulator-tuning>
        <band frequency="47" threshold_low="-448" threshold_high="-256" isolated_band="true"/>
        <band frequency="141" threshold_low="-400" threshold_high="-200" isolated_band="True"/>
        <band frequency="234" threshold_low="-300" threshold_high="-100" isolated_band="1"/>
        <band frequency="328" threshold_low="-200" threshold_high="0"/>
    </regulator-tuning>)");
    EXPECT_EQ(values, (ValueMap{{REGULATOR_FREQUENCY, {47, 141, 234, 328}},
                                {REGULATOR_THRESHOLD_LOW, {-448, -400, -300, -200}},
                                {REGULATOR_THRESHOLD_HIGH, {-256, -200, -100, 0}}, {REGULATOR_ISOLATED_BAND, {1, 0, 0, 0}}}));
}

TEST_F(SetterFixture, OutputModeConcatenatesTheRowsOfItsContainer) {
    auto values = apply(R"(<output-mode>
        <matrix>
            <row value="16384, 0" ignored="5"/>
            <row value="0 16384"/>
            <row/>
            <row coefficients="8192,8192"/>
        </matrix>
    </output-mode>)");
    EXPECT_EQ(values, (ValueMap{{OUTPUT_MIX_MATRIX, {16384, 0, 0, 16384, 8192, 8192}}}));

    // No container, or a container without children: an empty matrix is still stored.
    bool dirty = false;
    EXPECT_EQ(apply("<output-mode>\n    </output-mode>", &dirty), (ValueMap{{OUTPUT_MIX_MATRIX, {}}}));
    EXPECT_TRUE(dirty);
    EXPECT_EQ(apply("<output-mode>\n        <matrix/>\n    </output-mode>"), (ValueMap{{OUTPUT_MIX_MATRIX, {}}}));
}

}  // namespace
}  // namespace korvi
