// The observer registry: fan-out in address order, duplicates, unregistering. (What each call
// carries is checked through the context's own announcements.)
#include <gtest/gtest.h>

#include "context/AxContextChangeObservable.h"
#include "context/ContextTestSupport.h"

namespace korvi {
namespace {

TEST(AxContextChangeObservableTest, ForwardsEachCallOnceToEachObserverInAddressOrder) {
    test::ContextStore store;
    AxContextChangeObservable o;
    AxContext context(&store.provider(), &o);
    GeqPreset geq(4);
    test::Events log;
    test::RecordingObserver pair[2] = {test::RecordingObserver("low", &log),
                                       test::RecordingObserver("high", &log)};
    test::RecordingObserver stranger;
    o.onLoad(context);  // nothing registered yet
    o.registerObserver(&pair[1]), o.registerObserver(&pair[0]), o.registerObserver(&pair[0]);
    o.onSfxOnChanged(context, true);
    o.onSelectedProfileGeqChanged(context, geq);
    o.unregisterObserver(&stranger);  // not registered: no effect
    o.unregisterObserver(&pair[0]);
    o.onSelectedProfileChanged(context);
    o.unregisterAll();
    o.onLoad(context);
    o.registerObserver(&pair[0]);
    o.onSfxOnChanged(context, false);
    EXPECT_EQ(log, (test::Events{"low onSfxOnChanged on=1", "high onSfxOnChanged on=1",
                                 "low onSelectedProfileGeqChanged profile=4",
                                 "high onSelectedProfileGeqChanged profile=4",
                                 "high onSelectedProfileChanged", "low onSfxOnChanged on=0"}));
}

}  // namespace
}  // namespace korvi
