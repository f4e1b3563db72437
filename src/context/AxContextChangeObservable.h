// The registry of the context's observers. The context calls it as if it were one observer; it
// forwards every call to each registered observer in ascending order of the observers' addresses
// (the only order there is: an observer must not depend on being called before another).
//
// It owns no observer. It takes no lock: registration happens at start-up, shutdown or from an
// observer's own set-up, serialised by the context manager, never while a call is forwarded.
#pragma once

#include <set>

#include "context/OnAxContextChange.h"

namespace korvi {

class AxContextChangeObservable : public OnAxContextChange {
public:
    AxContextChangeObservable() = default;
    ~AxContextChangeObservable() override = default;
    AxContextChangeObservable(const AxContextChangeObservable&) = delete;
    AxContextChangeObservable& operator=(const AxContextChangeObservable&) = delete;

    // Registering an observer twice keeps one entry. No callback is made from here.
    void registerObserver(OnAxContextChange* observer);
    // Unregistering an observer that is not registered does nothing.
    void unregisterObserver(OnAxContextChange* observer);
    void unregisterAll();

    void onLoad(AxContext& context) override;
    void onSfxOnChanged(AxContext& context, bool on) override;
    void onSelectedProfileChanged(AxContext& context) override;
    void onSelectedProfileParameterChanged(AxContext& context, Profile& profile) override;
    void onSelectedProfileEndpointChanged(AxContext& context, Port port,
                                          ProfileEndpoint& endpoint) override;
    void onSelectedProfileIeqChanged(AxContext& context, Port port, IeqPreset& preset) override;
    void onSelectedProfileGeqChanged(AxContext& context, GeqPreset& preset) override;
    void onSelectedTuningChanged(AxContext& context, Port port, Tuning& tuning) override;

private:
    // Ordered by address, which is the order of every fan-out.
    std::set<OnAxContextChange*> mObservers;
};

}  // namespace korvi
