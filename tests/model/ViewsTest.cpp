// The effective parameter views: which parameters each admits, how records are merged into them
// and what their observer hears, in which order.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/DeviceParameters.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/ProfileEndpoint.h"
#include "model/ProfileParameters.h"
#include "model/Tuning.h"

namespace korvi {
namespace {

// Records every call as one event, and for a change also the value the view held for that
// parameter at the moment it was told (to prove it is told before the next value is merged).
class RecordingObserver : public ParamChangeObserver {
public:
    struct Event {
        bool isSource;
        ParameterValues* values;
        Endpoint endpoint;
        bool mono;
        Parameter parameter;
        std::vector<int> valueAtCall;
        bool nextParameterPresentAtCall;
    };

    void setSource(ParameterValues* values, Endpoint endpoint, bool mono) override {
        mSource = values;
        events.push_back({true, values, endpoint, mono, AUDIO_OPTIMIZER_ENABLE, {}, false});
    }
    void onParameterChanged(Parameter p) override {
        Event e{false, nullptr, OTHER, false, p, {}, false};
        auto it = mSource->mValues.find(p);
        if (it != mSource->mValues.end()) e.valueAtCall = it->second;
        if (watchNext) e.nextParameterPresentAtCall = mSource->mValues.count(*watchNext) != 0;
        events.push_back(e);
    }

    std::vector<Parameter> changes() const {
        std::vector<Parameter> out;
        for (const Event& e : events) {
            if (!e.isSource) out.push_back(e.parameter);
        }
        return out;
    }

    std::vector<Event> events;
    const Parameter* watchNext = nullptr;

private:
    ParameterValues* mSource = nullptr;
};

std::set<Parameter> unionOf(std::initializer_list<const std::set<Parameter>*> sets) {
    std::set<Parameter> out;
    for (const auto* s : sets) out.insert(s->begin(), s->end());
    return out;
}

TEST(Views, AdmitDisjointSetsThatTogetherCoverEveryParameter) {
    EXPECT_EQ(ProfileParameters::kValidParams.size(), 10u);
    EXPECT_EQ(DeviceParameters::kValidParams.size(), 86u);
    EXPECT_EQ(ProfileParameters::kValidParams, unionOf({&Profile::kValidParams, &GeqPreset::kValidParams}));
    std::set<Parameter> device = unionOf({&Tuning::kValidParams, &ProfileEndpoint::kValidParams,
                                          &IeqPreset::kValidParams});
    device.insert(VIRTUAL_BASS_TYPE);
    EXPECT_EQ(DeviceParameters::kValidParams, device);
    for (int i = 0; i < kParameterCount; ++i) {
        const Parameter p = static_cast<Parameter>(i);
        EXPECT_NE(ProfileParameters::kValidParams.count(p), DeviceParameters::kValidParams.count(p))
            << kParameterNames[i] << " must belong to exactly one view";
    }
}

TEST(Views, ConstructionBindsTheObserverAtOnceWithOtherAndNotMono) {
    RecordingObserver profileObserver;
    ProfileParameters profileView(&profileObserver);
    ASSERT_EQ(profileObserver.events.size(), 1u);
    EXPECT_TRUE(profileObserver.events[0].isSource);
    EXPECT_EQ(profileObserver.events[0].values, &profileView);
    EXPECT_EQ(profileObserver.events[0].endpoint, OTHER);
    EXPECT_FALSE(profileObserver.events[0].mono);
    EXPECT_EQ(profileView.getId(), -1);
    EXPECT_TRUE(profileView.mValues.empty());
    EXPECT_EQ(profileView.getProfile(), nullptr);
    EXPECT_EQ(profileView.getGeqPreset(), nullptr);

    RecordingObserver deviceObserver;
    DeviceParameters deviceView(&deviceObserver);
    ASSERT_EQ(deviceObserver.events.size(), 1u);
    EXPECT_TRUE(deviceObserver.events[0].isSource);
    EXPECT_EQ(deviceObserver.events[0].values, &deviceView);
    EXPECT_EQ(deviceObserver.events[0].endpoint, OTHER);
    EXPECT_FALSE(deviceObserver.events[0].mono);
    EXPECT_EQ(deviceView.getId(), -1);
    EXPECT_TRUE(deviceView.mValues.empty());
    EXPECT_EQ(deviceView.getProfile(), nullptr);
    EXPECT_EQ(deviceView.getProfileEndpoint(), nullptr);
    EXPECT_EQ(deviceView.getIeqPreset(), nullptr);
    EXPECT_EQ(deviceView.getTuning(), nullptr);
}

TEST(ProfileParametersView, ReportsEachRealChangeOnceInAscendingOrderAsItIsMerged) {
    RecordingObserver observer;
    const Parameter next = VOLUME_MODELER_ENABLE;
    observer.watchNext = &next;
    ProfileParameters view(&observer);
    observer.events.clear();

    Profile profile(1, "Movie", false);
    // Set in descending order on purpose: the view must still merge in parameter order.
    profile.set(VOLUME_MODELER_ENABLE, {1});
    profile.set(REVERB_SUPPRESSION_AMOUNT, {4});
    profile.set(CUSTOM_DRC_METADATA, {7, 8, 9});
    profile.set(GEQ_GAIN, {5});  // not a profile parameter; the view admits it anyway

    view.setProfile(profile);
    EXPECT_EQ(view.getProfile(), &profile);
    EXPECT_EQ(observer.changes(),
              (std::vector<Parameter>{CUSTOM_DRC_METADATA, GEQ_GAIN, REVERB_SUPPRESSION_AMOUNT,
                                      VOLUME_MODELER_ENABLE}));
    // Each report comes after its own value is stored and before the last one is merged.
    EXPECT_EQ(observer.events[0].valueAtCall, (std::vector<int>{7, 8, 9}));
    EXPECT_FALSE(observer.events[0].nextParameterPresentAtCall);
    EXPECT_EQ(observer.events[2].valueAtCall, (std::vector<int>{4}));
    EXPECT_FALSE(observer.events[2].nextParameterPresentAtCall);
    EXPECT_EQ(observer.events[3].valueAtCall, (std::vector<int>{1}));
    EXPECT_EQ(view.mValues.at(CUSTOM_DRC_METADATA), (std::vector<int>{7, 8, 9}));
    EXPECT_TRUE(view.isDirty());

    // The same record again changes nothing and reports nothing.
    observer.events.clear();
    view.setProfile(profile);
    EXPECT_TRUE(observer.events.empty());

    // A GEQ preset that changes one value of two reports only that one.
    GeqPreset preset(1);
    preset.set(GEQ_FREQUENCY, {100, 1000});
    preset.set(GEQ_GAIN, {5});
    observer.events.clear();
    view.setGeqPreset(preset);
    EXPECT_EQ(view.getGeqPreset(), &preset);
    EXPECT_EQ(observer.changes(), (std::vector<Parameter>{GEQ_FREQUENCY}));

    // A record lacking a parameter leaves the view's value alone.
    Profile other(2, "Music", false);
    other.set(REVERB_SUPPRESSION_AMOUNT, {2});
    observer.events.clear();
    view.setProfile(other);
    EXPECT_EQ(observer.changes(), (std::vector<Parameter>{REVERB_SUPPRESSION_AMOUNT}));
    EXPECT_EQ(view.mValues.at(VOLUME_MODELER_ENABLE), (std::vector<int>{1}));
    EXPECT_EQ(view.mValues.at(REVERB_SUPPRESSION_AMOUNT), (std::vector<int>{2}));
}

TEST(ProfileParametersView, MergesEmptyListsAndIgnoresDeviceParameters) {
    RecordingObserver observer;
    ProfileParameters view(&observer);
    Profile profile(1, "Movie", false);
    profile.set(REVERB_SUPPRESSION_ENABLE, {1});
    view.setProfile(profile);

    Profile emptied(1, "Movie", false);
    emptied.set(REVERB_SUPPRESSION_ENABLE, {});
    emptied.set(MI_IEQ_STEERING_ENABLE, {});  // absent before: stays unreported but present
    emptied.set(IEQ_AMOUNT, {3});             // a device parameter: refused
    observer.events.clear();
    view.setProfile(emptied);
    EXPECT_EQ(observer.changes(), (std::vector<Parameter>{REVERB_SUPPRESSION_ENABLE}));
    EXPECT_EQ(view.mValues.at(REVERB_SUPPRESSION_ENABLE), std::vector<int>{});
    ASSERT_EQ(view.mValues.count(MI_IEQ_STEERING_ENABLE), 1u);
    EXPECT_TRUE(view.mValues.at(MI_IEQ_STEERING_ENABLE).empty());
    EXPECT_EQ(view.mValues.count(IEQ_AMOUNT), 0u);
}

TEST(DeviceParametersView, TakesAProfileWithoutChangingAnyValue) {
    RecordingObserver observer;
    DeviceParameters view(&observer);
    observer.events.clear();
    Profile profile(1, "Movie", false);
    profile.set(VOLUME_MODELER_ENABLE, {1});
    profile.set(REVERB_SUPPRESSION_AMOUNT, {4});
    profile.set(CUSTOM_DRC_METADATA, {1, 2});
    view.setProfile(profile);
    EXPECT_EQ(view.getProfile(), &profile);
    EXPECT_TRUE(observer.events.empty());
    EXPECT_TRUE(view.mValues.empty());
    EXPECT_EQ(view.mValues.count(VOLUME_MODELER_ENABLE), 0u);
    EXPECT_EQ(view.mValues.count(REVERB_SUPPRESSION_AMOUNT), 0u);

    // Also after device values have arrived.
    ProfileEndpoint endpoint(2, SPEAKER, 0);
    endpoint.set(IEQ_AMOUNT, {4});
    view.setProfileEndpoint(endpoint);
    Profile plain(2, "Music", false);
    plain.set(VOLUME_MODELER_ENABLE, {0});
    plain.set(MI_IEQ_STEERING_ENABLE, {1});
    const auto before = view.mValues;
    observer.events.clear();
    view.setProfile(plain);
    EXPECT_TRUE(observer.events.empty());
    EXPECT_EQ(view.mValues, before);
    EXPECT_EQ(view.getProfile(), &plain);
}

TEST(DeviceParametersView, MergesRecordsInOrderSkipsEmptyListsAndKeepsEarlierValues) {
    RecordingObserver observer;
    DeviceParameters view(&observer);
    observer.events.clear();

    ProfileEndpoint speaker(1, SPEAKER, 0);
    speaker.set(VOLUME_LEVELER_ENABLE, {1});
    speaker.set(DIALOG_ENHANCER_AMOUNT, {5});
    speaker.set(BASS_ENHANCER_ENABLE, {});  // skipped: neither stored nor reported
    speaker.set(IEQ_AMOUNT, {10});
    view.setProfileEndpoint(speaker);
    EXPECT_EQ(view.getProfileEndpoint(), &speaker);
    EXPECT_EQ(observer.changes(),
              (std::vector<Parameter>{DIALOG_ENHANCER_AMOUNT, IEQ_AMOUNT, VOLUME_LEVELER_ENABLE}));
    EXPECT_EQ(view.mValues.count(BASS_ENHANCER_ENABLE), 0u);

    // An empty list never clears a value either.
    ProfileEndpoint second(1, SPEAKER, 0);
    second.set(VOLUME_LEVELER_ENABLE, {});
    second.set(IEQ_AMOUNT, {10});
    second.set(DIALOG_ENHANCER_AMOUNT, {6, 1});
    observer.events.clear();
    view.setProfileEndpoint(second);
    EXPECT_EQ(observer.changes(), (std::vector<Parameter>{DIALOG_ENHANCER_AMOUNT}));
    EXPECT_EQ(view.mValues.at(VOLUME_LEVELER_ENABLE), (std::vector<int>{1}));
    EXPECT_EQ(view.mValues.at(DIALOG_ENHANCER_AMOUNT), (std::vector<int>{6, 1}));

    // The IEQ preset's own id is a device value like any other.
    IeqPreset preset(3, "warm");
    preset.set(IEQ_TARGET, {1, 2});
    preset.set(IEQ_FREQUENCY, {100, 200});
    observer.events.clear();
    view.setIeqPreset(preset);
    EXPECT_EQ(view.getIeqPreset(), &preset);
    EXPECT_EQ(observer.changes(), (std::vector<Parameter>{IEQ_FREQUENCY, IEQ_ID, IEQ_TARGET}));
    EXPECT_EQ(view.mValues.at(IEQ_ID), (std::vector<int>{3}));
    observer.events.clear();
    view.setIeqPreset(preset);
    EXPECT_TRUE(observer.events.empty());
}

TEST(DeviceParametersView, SetTuningAnnouncesTheSourceBeforeMergingEvenWhenNothingChanges) {
    RecordingObserver observer;
    DeviceParameters view(&observer);
    observer.events.clear();

    Tuning tuning("speaker-tuning", SPEAKER, true);
    tuning.set(OUTPUT_CHANNELS, {2});
    tuning.set(AUDIO_OPTIMIZER_ENABLE, {1});
    tuning.set(VIRTUAL_BASS_SUBGAINS, {1, 2, 3});
    view.setTuning(tuning);
    EXPECT_EQ(view.getTuning(), &tuning);
    ASSERT_EQ(observer.events.size(), 4u);
    EXPECT_TRUE(observer.events[0].isSource);
    EXPECT_EQ(observer.events[0].values, &view);
    EXPECT_EQ(observer.events[0].endpoint, SPEAKER);
    EXPECT_TRUE(observer.events[0].mono);
    EXPECT_EQ(observer.changes(),
              (std::vector<Parameter>{AUDIO_OPTIMIZER_ENABLE, OUTPUT_CHANNELS, VIRTUAL_BASS_SUBGAINS}));

    // A different tuning with the same values: the source is re-announced, nothing is reported.
    Tuning headphone("headphone-tuning", HEADPHONE, false);
    headphone.mValues = tuning.mValues;
    observer.events.clear();
    view.setTuning(headphone);
    ASSERT_EQ(observer.events.size(), 1u);
    EXPECT_TRUE(observer.events[0].isSource);
    EXPECT_EQ(observer.events[0].endpoint, HEADPHONE);
    EXPECT_FALSE(observer.events[0].mono);
    EXPECT_EQ(view.getTuning(), &headphone);
}

TEST(DeviceParametersView, TheLastRecordAppliedWins) {
    RecordingObserver observer;
    DeviceParameters view(&observer);
    Tuning tuning("t", HEADPHONE, false);
    tuning.set(IEQ_AMOUNT, {1});  // not a tuning parameter, but the view takes it from anyone
    view.setTuning(tuning);
    ProfileEndpoint endpoint(1, HEADPHONE, 0);
    endpoint.set(IEQ_AMOUNT, {2});
    observer.events.clear();
    view.setProfileEndpoint(endpoint);
    EXPECT_EQ(observer.changes(), (std::vector<Parameter>{IEQ_AMOUNT}));
    EXPECT_EQ(view.mValues.at(IEQ_AMOUNT), (std::vector<int>{2}));
}

}  // namespace
}  // namespace korvi
