#include "context/AxContextChangeObservable.h"

namespace korvi {

void AxContextChangeObservable::registerObserver(OnAxContextChange* observer) {
    mObservers.insert(observer);
}

// erase by key is a no-op for an observer that is not registered.
void AxContextChangeObservable::unregisterObserver(OnAxContextChange* observer) {
    mObservers.erase(observer);
}

void AxContextChangeObservable::unregisterAll() {
    mObservers.clear();
}

void AxContextChangeObservable::onLoad(AxContext& context) {
    for (OnAxContextChange* observer : mObservers) observer->onLoad(context);
}

void AxContextChangeObservable::onSfxOnChanged(AxContext& context, bool on) {
    for (OnAxContextChange* observer : mObservers) observer->onSfxOnChanged(context, on);
}

void AxContextChangeObservable::onSelectedProfileChanged(AxContext& context) {
    for (OnAxContextChange* observer : mObservers) observer->onSelectedProfileChanged(context);
}

void AxContextChangeObservable::onSelectedProfileParameterChanged(AxContext& context,
                                                                  Profile& profile) {
    for (OnAxContextChange* observer : mObservers) {
        observer->onSelectedProfileParameterChanged(context, profile);
    }
}

void AxContextChangeObservable::onSelectedProfileEndpointChanged(AxContext& context, Port port,
                                                                 ProfileEndpoint& endpoint) {
    for (OnAxContextChange* observer : mObservers) {
        observer->onSelectedProfileEndpointChanged(context, port, endpoint);
    }
}

void AxContextChangeObservable::onSelectedProfileIeqChanged(AxContext& context, Port port,
                                                            IeqPreset& preset) {
    for (OnAxContextChange* observer : mObservers) {
        observer->onSelectedProfileIeqChanged(context, port, preset);
    }
}

void AxContextChangeObservable::onSelectedProfileGeqChanged(AxContext& context,
                                                            GeqPreset& preset) {
    for (OnAxContextChange* observer : mObservers) {
        observer->onSelectedProfileGeqChanged(context, preset);
    }
}

void AxContextChangeObservable::onSelectedTuningChanged(AxContext& context, Port port,
                                                        Tuning& tuning) {
    for (OnAxContextChange* observer : mObservers) {
        observer->onSelectedTuningChanged(context, port, tuning);
    }
}

}  // namespace korvi
