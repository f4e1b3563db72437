// The observer registry: fan-out in address order, duplicates, unregistering, arguments.
#include <gtest/gtest.h>

#include "context/AxContextChangeObservable.h"
#include "context/ContextTestSupport.h"

namespace korvi {
namespace {

TEST(AxContextChangeObservableTest, ForwardsEveryCallOnceToEachObserverInAddressOrder) {
    test::ContextStore store;
    AxContextChangeObservable o;
    AxContext context(&store.provider(), &o);
    Profile profile(4, "Game", false);
    ProfileEndpoint endpoint(4, HEADPHONE, 2);
    IeqPreset ieq(3, "warm");
    GeqPreset geq(4);
    Tuning tuning("external_display", OTHER, false);
    const test::Events kCalls = {
        "onLoad", "onSfxOnChanged on=0", "onSfxOnChanged on=1", "onSelectedProfileChanged",
        "onSelectedProfileParameterChanged profile=4",
        "onSelectedProfileEndpointChanged port=5 endpoint=1 profile=4",
        "onSelectedProfileIeqChanged port=4 preset=3", "onSelectedProfileGeqChanged profile=4",
        "onSelectedTuningChanged port=2 tuning=external_display"};
    auto announceAll = [&] {
        o.onLoad(context), o.onSfxOnChanged(context, false), o.onSfxOnChanged(context, true);
        o.onSelectedProfileChanged(context), o.onSelectedProfileParameterChanged(context, profile);
        o.onSelectedProfileEndpointChanged(context, PORT_USB, endpoint);
        o.onSelectedProfileIeqChanged(context, PORT_BLUETOOTH, ieq);
        o.onSelectedProfileGeqChanged(context, geq);
        o.onSelectedTuningChanged(context, PORT_MIRACAST, tuning);
    };
    test::Events log, expected;
    test::RecordingObserver pair[2] = {test::RecordingObserver("low", &log),
                                       test::RecordingObserver("high", &log)};
    test::RecordingObserver stranger;
    announceAll();  // nothing registered yet
    o.registerObserver(&pair[1]), o.registerObserver(&pair[0]), o.registerObserver(&pair[0]);
    announceAll();
    for (const std::string& call : kCalls) expected.insert(expected.end(), {"low " + call, "high " + call});
    o.unregisterObserver(&stranger);  // not registered: no effect
    o.unregisterObserver(&pair[0]);
    o.onLoad(context);
    o.unregisterAll();
    announceAll();
    o.registerObserver(&pair[0]);
    o.onLoad(context);
    expected.insert(expected.end(), {"high onLoad", "low onLoad"});
    EXPECT_EQ(log, expected);
}

}  // namespace
}  // namespace korvi
