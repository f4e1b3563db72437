// The service's handle on the audio effect. The service never talks to the effect directly: it
// leaves each command's parameter blob in the shared parameter store, where the effect picks it
// up. Every operation is virtual so that a host or a test can stand in for the effect.
#pragma once

#include <vector>

#include <utils/String16.h>

namespace korvi {

class SfxEffect {
public:
    // Neither argument is kept: the store, not an effect instance, receives the parameters.
    SfxEffect(int id, const android::String16& name);
    virtual ~SfxEffect() = default;

    // Sends a whole blob; the int is not used. Returns -22, like SetParamCommand::execute.
    virtual int send(int cmd, std::vector<int>& blob);
    // Checks the blob and writes all its entries into the shared store as one commit, so that
    // the effect sees all of them or none. An invalid blob is logged and nothing is written.
    virtual void sendSharedStore(void* data, unsigned size);
    // Reading goes through the store's getStoredParams; this returns 0 and leaves blob alone.
    virtual int receive(int cmd, std::vector<int>& blob);
    virtual bool hasControl() { return true; }
    virtual void setEnabled(bool /*enabled*/) {}
};

}  // namespace korvi
