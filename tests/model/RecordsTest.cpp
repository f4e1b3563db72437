// ParameterValues and the six stored records: values, dirty flags, equality and text forms.
#include <gtest/gtest.h>

#include "model/DeviceTuning.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"

namespace korvi {
namespace {

TEST(ParameterValues, CheckAndUpdateChangesOnlyAdmissibleDifferentValues) {
    Profile p(5, 0, "Movie", false);
    ASSERT_FALSE(p.isDirty());

    // Not admitted by a profile: nothing changes, not even an empty entry appears.
    EXPECT_FALSE(p.checkAndUpdate(GEQ_GAIN, {1, 2}));
    EXPECT_TRUE(p.mValues.empty());
    EXPECT_FALSE(p.isDirty());

    // Admitted but absent, with an empty list: false, yet the parameter is now present and empty.
    EXPECT_FALSE(p.checkAndUpdate(REVERB_SUPPRESSION_AMOUNT, {}));
    ASSERT_EQ(p.mValues.count(REVERB_SUPPRESSION_AMOUNT), 1u);
    EXPECT_TRUE(p.mValues[REVERB_SUPPRESSION_AMOUNT].empty());
    EXPECT_FALSE(p.isDirty());

    EXPECT_TRUE(p.checkAndUpdate(REVERB_SUPPRESSION_AMOUNT, {3, 4}));
    EXPECT_TRUE(p.isDirty());
    p.setDirty(false);
    EXPECT_FALSE(p.checkAndUpdate(REVERB_SUPPRESSION_AMOUNT, {3, 4}));
    EXPECT_FALSE(p.isDirty());
    // A prefix of the stored list is a change.
    EXPECT_TRUE(p.checkAndUpdate(REVERB_SUPPRESSION_AMOUNT, {3}));
    EXPECT_EQ(p.mValues[REVERB_SUPPRESSION_AMOUNT], std::vector<int>{3});
    EXPECT_TRUE(p.isDirty());
}

TEST(ParameterValues, SetAlwaysStoresAndMarksDirty) {
    GeqPreset g(2, 1);
    g.set(GEQ_GAIN, {0, -3});
    EXPECT_TRUE(g.isDirty());
    g.setDirty(false);
    g.set(GEQ_GAIN, {0, -3});  // the same value still marks the record dirty
    EXPECT_TRUE(g.isDirty());
    g.setDirty(false);
    g.set(IEQ_AMOUNT, {7});  // set validates nothing
    EXPECT_TRUE(g.isDirty());
    EXPECT_EQ(g.mValues.at(IEQ_AMOUNT), std::vector<int>{7});
    g.set(GEQ_GAIN, {1});  // replaces the whole list
    EXPECT_EQ(g.mValues.at(GEQ_GAIN), std::vector<int>{1});
}

TEST(ParameterValues, ValuesToStringPrintsColumnsInOrderWithoutIeqId) {
    ProfileEndpoint e(1, SPEAKER, 0);
    EXPECT_EQ(e.valuesToString(), "");
    e.set(GEQ_GAIN, {0, -3});
    e.set(DIALOG_ENHANCER_AMOUNT, {5});
    e.set(BASS_ENHANCER_ENABLE, {});
    EXPECT_EQ(e.valuesToString(), "bass_enhancer_enable=\ndialog_enhancer_amount=5,\ngeq_gain=0,-3,\n");

    IeqPreset onlyId(4, "warm");
    EXPECT_EQ(onlyId.valuesToString(), "");
}

TEST(ParameterValuesDeathTest, ValuesToStringAbortsOnAnUnknownParameterNumber) {
    Tuning t("x", SPEAKER, false);
    t.set(static_cast<Parameter>(96), {1});
    EXPECT_DEATH(t.valuesToString(), "invalid parameter number 96");
}

TEST(ParameterValues, EqualsComparesValueMapsOnly) {
    Tuning t(10, "a", SPEAKER, false, false);
    GeqPreset g(20, 3);
    EXPECT_TRUE(t.equals(g));  // both empty, different classes, ids and dirty flags
    t.set(GEQ_GAIN, {1, 2});
    EXPECT_FALSE(t.equals(g));
    g.set(GEQ_GAIN, {1, 2});
    EXPECT_TRUE(t.equals(g));
    g.set(GEQ_GAIN, {1, 2, 3});
    EXPECT_FALSE(t.equals(g));
    g.set(GEQ_GAIN, {1, 2});
    g.set(GEQ_FREQUENCY, {});
    EXPECT_FALSE(t.equals(g));  // an extra present parameter, even empty, differs
    EXPECT_TRUE(t.ParameterValues::equals(t));
}

TEST(Records, ConstructorsSetIdsDirtyFlagsAndDefaults) {
    Tuning fresh("spk", HEADPHONE, true);
    EXPECT_EQ(fresh.getId(), -1);
    EXPECT_TRUE(fresh.isDirty());
    EXPECT_TRUE(fresh.isReadonly());  // every tuning made in memory is read-only
    Tuning stored(7, "spk", OTHER, false, false);
    EXPECT_EQ(stored.getId(), 7);
    EXPECT_FALSE(stored.isDirty());
    EXPECT_FALSE(stored.isReadonly());

    Profile p(3, "Voice", true);
    EXPECT_EQ(p.getId(), -1);
    EXPECT_TRUE(p.isDirty());
    EXPECT_EQ(p.getSelectedGeqPreset(), 3);
    Profile sp(int64_t{1} << 40, 2, "Music", false);
    EXPECT_EQ(sp.getId(), int64_t{1} << 40);
    EXPECT_FALSE(sp.isDirty());
    EXPECT_EQ(sp.getSelectedGeqPreset(), 2);

    EXPECT_TRUE(ProfileEndpoint(1, SPEAKER, 2).isDirty());
    EXPECT_FALSE(ProfileEndpoint(9, 1, SPEAKER, 2).isDirty());
    EXPECT_TRUE(GeqPreset(1).isDirty());
    EXPECT_FALSE(GeqPreset(9, 1).isDirty());

    // A preset read from the database starts dirty too, and holds exactly its id.
    for (const IeqPreset& ieq : {IeqPreset(2, "balanced"), IeqPreset(11, 2, "balanced")}) {
        EXPECT_TRUE(ieq.isDirty());
        ASSERT_EQ(ieq.mValues.size(), 1u);
        EXPECT_EQ(ieq.mValues.at(IEQ_ID), std::vector<int>{2});
    }
    EXPECT_EQ(IeqPreset(2, "b").getId(), -1);
    EXPECT_EQ(IeqPreset(11, 2, "b").getId(), 11);

    DeviceTuning dt("Buds", "bluetooth", "bt_tuning");
    EXPECT_EQ(dt.getId(), -1);
    EXPECT_TRUE(dt.isDirty());
    DeviceTuning sdt(4, "Buds", "bluetooth", "bt_tuning");
    EXPECT_EQ(sdt.getId(), 4);
    EXPECT_TRUE(sdt.isDirty());  // a stored device tuning also starts dirty
    sdt.setDirty(false);
    EXPECT_FALSE(sdt.isDirty());
}

TEST(Records, SettersMarkDirtyOnlyWhereIntended) {
    Tuning t(1, "t", SPEAKER, false, true);
    t.setMono(true);
    t.setEndpoint("headphone");
    EXPECT_TRUE(t.isMono());
    EXPECT_EQ(t.getEndpoint(), HEADPHONE);
    EXPECT_FALSE(t.isDirty());
    t.setEndpoint("internal_speaker");  // a port name, not an endpoint name: unchanged
    EXPECT_EQ(t.getEndpoint(), HEADPHONE);
    t.setEndpoint("speaker");
    EXPECT_EQ(t.getEndpoint(), SPEAKER);

    Profile p(1, 0, "Dynamic", false);
    p.setMobility(true);
    EXPECT_TRUE(p.isMobility());
    EXPECT_FALSE(p.isDirty());
    p.setName("Dyn");
    EXPECT_TRUE(p.isDirty());
    p.setDirty(false);
    p.setSelectedGeqPreset(4);
    EXPECT_EQ(p.getSelectedGeqPreset(), 4);
    EXPECT_TRUE(p.isDirty());

    ProfileEndpoint e(1, 0, OTHER, 1);
    e.setSelectedIeqPreset(3);
    EXPECT_EQ(e.getSelectedIeqPreset(), 3);
    EXPECT_TRUE(e.isDirty());

    IeqPreset i(1, 0, "off");
    i.setDirty(false);
    i.setName("none");
    EXPECT_EQ(i.getName(), "none");
    EXPECT_TRUE(i.isDirty());

    EXPECT_FALSE(p.checkAndUpdate(VIRTUAL_BASS_TYPE, {1}));
    EXPECT_FALSE(t.checkAndUpdate(VIRTUAL_BASS_TYPE, {1}));
    EXPECT_FALSE(e.checkAndUpdate(VIRTUAL_BASS_TYPE, {1}));
    EXPECT_FALSE(i.checkAndUpdate(VIRTUAL_BASS_TYPE, {1}));
    EXPECT_FALSE(GeqPreset(0).checkAndUpdate(VIRTUAL_BASS_TYPE, {1}));
}

TEST(Records, EqualityRules) {
    Profile a(1, 3, "Music", false);
    Profile b(2, 3, "Other name", true);
    b.setSelectedGeqPreset(9);
    a.set(VOLUME_MODELER_ENABLE, {1});
    b.set(VOLUME_MODELER_ENABLE, {1});
    EXPECT_TRUE(a.equals(b));  // name, mobility and selected GEQ preset are not compared
    Profile c(3, 4, "Music", false);
    c.set(VOLUME_MODELER_ENABLE, {1});
    EXPECT_FALSE(a.equals(c));

    ProfileEndpoint e1(1, SPEAKER, 2);
    ProfileEndpoint e2(1, SPEAKER, 2);
    EXPECT_TRUE(e1.equals(e2));
    EXPECT_FALSE(e1.equals(ProfileEndpoint(1, HEADPHONE, 2)));
    EXPECT_FALSE(e1.equals(ProfileEndpoint(2, SPEAKER, 2)));
    EXPECT_FALSE(e1.equals(ProfileEndpoint(1, SPEAKER, 3)));
    e2.set(IEQ_AMOUNT, {5});
    EXPECT_FALSE(e1.equals(e2));

    GeqPreset g1(0), g2(0), g3(1);
    EXPECT_TRUE(g1.equals(g2));
    EXPECT_FALSE(g1.equals(g3));
    g2.set(GEQ_GAIN, {1});
    EXPECT_FALSE(g1.equals(g2));
}

TEST(Records, TextForms) {
    Tuning t("speaker_tuning", SPEAKER, true);
    EXPECT_EQ(t.toString(), "id=-1\nname=speaker_tuning\nendpoint=speaker\nmono=true\nreadonly=true\n");
    t.set(OUTPUT_CHANNELS, {2});
    EXPECT_EQ(t.toString(),
              "id=-1\nname=speaker_tuning\nendpoint=speaker\nmono=true\nreadonly=true\noutput_channels=2,\n");

    Profile p(int64_t{5000000000}, 1, "Movie", false);
    p.set(REVERB_SUPPRESSION_ENABLE, {0});
    EXPECT_EQ(p.toString(), "id=5000000000\nprofileId=1\nname=Movie\nmobility=false\nselectedGeqPreset=1\n"
                            "reverb_suppression_enable=0,\n");

    ProfileEndpoint e(3, 0, HEADPHONE, 2);
    EXPECT_EQ(e.toString(), "id=3\nprofileId=0\nendpoint=headphone\nselectedIeqPreset=2\n");

    IeqPreset i(6, 1, "detailed");
    i.set(IEQ_TARGET, {-1, 2});
    EXPECT_EQ(i.toString(), "id=6\npresetId=1\nname=detailed\nieq_target=-1,2,\n");

    GeqPreset g(2, 4);
    EXPECT_EQ(g.toString(), "id=2\nprofileId=4\n");

    DeviceTuning dt(8, "Buds Pro", "bluetooth", "bt");
    EXPECT_EQ(dt.toString(), "id=8\ndevice=Buds Pro\nport=bluetooth\ntuning=bt");
}

TEST(RecordsDeathTest, TextFormOfAnInvalidEndpointAborts) {
    Tuning t("x", static_cast<Endpoint>(3), false);
    EXPECT_DEATH(t.toString(), "invalid endpoint 3");
    ProfileEndpoint e(0, static_cast<Endpoint>(7), 0);
    EXPECT_DEATH(e.toString(), "invalid endpoint 7");
}

}  // namespace
}  // namespace korvi
