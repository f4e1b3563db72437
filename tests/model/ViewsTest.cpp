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
    RecordingObserver deviceObserver;
    DeviceParameters deviceView(&deviceObserver);
    const std::pair<RecordingObserver*, ParameterValues*> bound[] = {{&profileObserver, &profileView},
                                                                     {&deviceObserver, &deviceView}};
    for (const auto& [observer, view] : bound) {
        ASSERT_EQ(observer->events.size(), 1u);
        EXPECT_TRUE(observer->events[0].isSource);
        EXPECT_EQ(observer->events[0].values, view);
        EXPECT_EQ(observer->events[0].endpoint, OTHER);
        EXPECT_FALSE(observer->events[0].mono);
        EXPECT_EQ(view->getId(), -1);
        EXPECT_FALSE(view->isDirty());
        EXPECT_TRUE(view->mValues.empty());
    }
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

    // A record lacking a parameter leaves the view's value alone; an empty list is merged (and
    // reported only where it changes a value); a device parameter is refused.
    Profile other(2, "Music", false);
    other.set(REVERB_SUPPRESSION_AMOUNT, {});
    other.set(MI_IEQ_STEERING_ENABLE, {});
    other.set(IEQ_AMOUNT, {3});
    observer.events.clear();
    view.setProfile(other);
    EXPECT_EQ(observer.changes(), (std::vector<Parameter>{REVERB_SUPPRESSION_AMOUNT}));
    EXPECT_EQ(view.mValues.at(VOLUME_MODELER_ENABLE), (std::vector<int>{1}));
    EXPECT_EQ(view.mValues.at(REVERB_SUPPRESSION_AMOUNT), std::vector<int>{});
    ASSERT_EQ(view.mValues.count(MI_IEQ_STEERING_ENABLE), 1u);
    EXPECT_TRUE(view.mValues.at(MI_IEQ_STEERING_ENABLE).empty());
    EXPECT_EQ(view.mValues.count(IEQ_AMOUNT), 0u);
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

    // A profile reaches the view but changes none of its values.
    Profile profile(1, "Movie", false);
    profile.set(VOLUME_MODELER_ENABLE, {1});
    profile.set(MI_IEQ_STEERING_ENABLE, {1});
    const auto before = view.mValues;
    view.setProfile(profile);
    EXPECT_EQ(view.getProfile(), &profile);
    EXPECT_TRUE(observer.events.empty());
    EXPECT_EQ(view.mValues, before);
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

    // The last record applied wins, whichever kind it is.
    ProfileEndpoint endpoint(1, HEADPHONE, 0);
    endpoint.set(AUDIO_OPTIMIZER_ENABLE, {2});
    observer.events.clear();
    view.setProfileEndpoint(endpoint);
    EXPECT_EQ(observer.changes(), (std::vector<Parameter>{AUDIO_OPTIMIZER_ENABLE}));
    EXPECT_EQ(view.mValues.at(AUDIO_OPTIMIZER_ENABLE), (std::vector<int>{2}));
}

}  // namespace
}  // namespace korvi
