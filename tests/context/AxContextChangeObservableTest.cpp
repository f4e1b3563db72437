// The observer registry: fan-out in address order, duplicates, unregistering, arguments.
#include <gtest/gtest.h>

#include "context/AxContextChangeObservable.h"
#include "context/ContextTestSupport.h"

namespace korvi {
namespace {

TEST(AxContextChangeObservableTest, ForwardsEveryCallOnceToEachObserverInAddressOrder) {
    test::ContextStore store;
    AxContextChangeObservable observable;
    AxContext context(&store.provider(), &observable);
    Profile profile(4, "Game", false);
    ProfileEndpoint endpoint(4, HEADPHONE, 2);
    IeqPreset ieq(3, "warm");
    GeqPreset geq(4);
    Tuning tuning("external_display", OTHER, false);
    auto announceAll = [&] {
        observable.onLoad(context);
        observable.onSfxOnChanged(context, false);
        observable.onSfxOnChanged(context, true);
        observable.onSelectedProfileChanged(context);
        observable.onSelectedProfileParameterChanged(context, profile);
        observable.onSelectedProfileEndpointChanged(context, PORT_USB, endpoint);
        observable.onSelectedProfileIeqChanged(context, PORT_BLUETOOTH, ieq);
        observable.onSelectedProfileGeqChanged(context, geq);
        observable.onSelectedTuningChanged(context, PORT_MIRACAST, tuning);
    };
    std::vector<std::string> shared;
    test::RecordingObserver pair[2] = {test::RecordingObserver("low", &shared),
                                       test::RecordingObserver("high", &shared)};
    announceAll();  // nothing registered: nothing happens
    EXPECT_TRUE(shared.empty());

    // Registered high first and low twice: called in address order, each once.
    observable.registerObserver(&pair[1]);
    observable.registerObserver(&pair[0]);
    observable.registerObserver(&pair[0]);
    announceAll();
    std::vector<std::string> expected;
    for (const char* event :
         {"onLoad", "onSfxOnChanged on=0", "onSfxOnChanged on=1", "onSelectedProfileChanged",
          "onSelectedProfileParameterChanged profile=4",
          "onSelectedProfileEndpointChanged port=5 endpoint=1 profile=4",
          "onSelectedProfileIeqChanged port=4 preset=3", "onSelectedProfileGeqChanged profile=4",
          "onSelectedTuningChanged port=2 tuning=external_display"}) {
        expected.push_back(std::string("low ") + event);
        expected.push_back(std::string("high ") + event);
    }
    EXPECT_EQ(shared, expected);

    test::RecordingObserver stranger;
    observable.unregisterObserver(&stranger);  // not registered: no effect
    observable.unregisterObserver(&pair[0]);
    shared.clear();
    observable.onLoad(context);
    EXPECT_EQ(shared, std::vector<std::string>{"high onLoad"});
    observable.unregisterAll();
    shared.clear();
    announceAll();
    EXPECT_TRUE(shared.empty());
    observable.registerObserver(&pair[0]);
    observable.onLoad(context);
    EXPECT_EQ(shared, std::vector<std::string>{"low onLoad"});
}

}  // namespace
}  // namespace korvi
