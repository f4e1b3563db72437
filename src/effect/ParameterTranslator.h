// The translation state of one device: observes the device's parameter view, remembers which
// translators have changed sources, and runs them into a command when asked.
#pragma once

#include <cstdint>
#include <vector>

#include "effect/Translator.h"
#include "effect/TranslatorCollection.h"
#include "model/ParamChangeObserver.h"

namespace korvi {

class ParameterTranslator : public ParamChangeObserver {
public:
    // The one collection every device translates through, made at library load.
    static TranslatorCollection* const sTranslatorCollection;

    ParameterTranslator() = default;
    ~ParameterTranslator() override = default;

    // The view to read from and the endpoint kind and mono flag handed to every translator.
    // Pending translators stay pending.
    void setSource(ParameterValues* values, Endpoint endpoint, bool mono) override;
    // Marks the translator that reads p; a parameter no translator reads is ignored.
    void onParameterChanged(Parameter p) override;

    // Runs every pending translator once into cmd, then forgets them.
    void translatePending(SetParamCommand& cmd);
    // Marks every translator with a parameter present in the source, then runs them: a full send
    // of the view.
    void translateAll(SetParamCommand& cmd);

    ParameterValues* getSource() const { return mSource; }
    Endpoint getEndpoint() const { return mEndpoint; }
    bool isMono() const { return mMono; }
    size_t pendingCount() const { return mPendingCount; }

private:
    // One bit per translator of the collection, by its number: marking a change costs no
    // allocation, and running walks only the set bits, in the collection's fixed order.
    std::vector<uint64_t> mPending = std::vector<uint64_t>((sTranslatorCollection->size() + 63) / 64);
    size_t mPendingCount = 0;
    ParameterValues* mSource = nullptr;
    Endpoint mEndpoint = SPEAKER;
    bool mMono = false;
};

}  // namespace korvi
