// The observer registry: fan-out in address order, duplicates, unregistering, arguments.
#include <gtest/gtest.h>

#include "context/AxContextChangeObservable.h"
#include "context/ContextTestSupport.h"

namespace korvi {
namespace {

using test::ContextStore;
using test::RecordingObserver;

void announceAll(OnAxContextChange& target, AxContext& context, Profile& profile,
                 ProfileEndpoint& endpoint, IeqPreset& ieq, GeqPreset& geq, Tuning& tuning) {
    target.onLoad(context);
    target.onSfxOnChanged(context, false);
    target.onSfxOnChanged(context, true);
    target.onSelectedProfileChanged(context);
    target.onSelectedProfileParameterChanged(context, profile);
    target.onSelectedProfileEndpointChanged(context, PORT_USB, endpoint);
    target.onSelectedProfileIeqChanged(context, PORT_BLUETOOTH, ieq);
    target.onSelectedProfileGeqChanged(context, geq);
    target.onSelectedTuningChanged(context, PORT_MIRACAST, tuning);
}

TEST(AxContextChangeObservableTest, ForwardsEveryCallOnceToEachObserverInAddressOrder) {
    ContextStore store;
    AxContextChangeObservable observable;
    AxContext context(&store.provider(), &observable);
    Profile profile(4, "Game", false);
    ProfileEndpoint endpoint(4, HEADPHONE, 2);
    IeqPreset ieq(3, "warm");
    GeqPreset geq(4);
    Tuning tuning("external_display", OTHER, false);

    std::vector<std::string> shared;
    RecordingObserver pair[2] = {RecordingObserver("low", &shared),
                                 RecordingObserver("high", &shared)};
    // Nothing registered: every call returns without effect.
    announceAll(observable, context, profile, endpoint, ieq, geq, tuning);
    EXPECT_TRUE(shared.empty());

    // Registered high first and low twice: the order is the address order, and each once.
    observable.registerObserver(&pair[1]);
    observable.registerObserver(&pair[0]);
    observable.registerObserver(&pair[0]);
    announceAll(observable, context, profile, endpoint, ieq, geq, tuning);
    const std::vector<std::string> one = {
        "onLoad",
        "onSfxOnChanged on=0",
        "onSfxOnChanged on=1",
        "onSelectedProfileChanged",
        "onSelectedProfileParameterChanged profile=4",
        "onSelectedProfileEndpointChanged port=5 endpoint=1 profile=4",
        "onSelectedProfileIeqChanged port=4 preset=3",
        "onSelectedProfileGeqChanged profile=4",
        "onSelectedTuningChanged port=2 tuning=external_display",
    };
    std::vector<std::string> expected;
    for (const std::string& event : one) {
        expected.push_back("low " + event);
        expected.push_back("high " + event);
    }
    EXPECT_EQ(shared, expected);

    // Unregistering one that is not registered changes nothing.
    RecordingObserver stranger;
    observable.unregisterObserver(&stranger);
    shared.clear();
    observable.onSelectedProfileChanged(context);
    EXPECT_EQ(shared, (std::vector<std::string>{"low onSelectedProfileChanged",
                                                "high onSelectedProfileChanged"}));

    observable.unregisterObserver(&pair[0]);
    shared.clear();
    observable.onLoad(context);
    EXPECT_EQ(shared, (std::vector<std::string>{"high onLoad"}));

    observable.unregisterAll();
    shared.clear();
    announceAll(observable, context, profile, endpoint, ieq, geq, tuning);
    EXPECT_TRUE(shared.empty());
    observable.registerObserver(&pair[0]);
    observable.onLoad(context);
    EXPECT_EQ(shared, (std::vector<std::string>{"low onLoad"}));
}

}  // namespace
}  // namespace korvi
