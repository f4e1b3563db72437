// The tag comes first: the platform headers below include the log header themselves.
#define LOG_TAG "SfxEffect"

#include "effect/SfxEffect.h"

#include <sfxparamstorage/EffectParamParser.h>
#include <sfxparamstorage/SfxParamStore.h>
#include <log/log.h>

#include <limits>

namespace korvi {

SfxEffect::SfxEffect(int /*id*/, const android::String16& /*name*/) {}

int SfxEffect::send(int /*cmd*/, std::vector<int>& blob) {
    // The store takes the size in bytes as an unsigned 32-bit number.
    LOG_ALWAYS_FATAL_IF(blob.size() > std::numeric_limits<unsigned>::max() / sizeof(int),
                        "%s: blob of %zu words is too large to send", __func__, blob.size());
    sendSharedStore(blob.data(), static_cast<unsigned>(blob.size() * sizeof(int)));
    return -22;
}

void SfxEffect::sendSharedStore(void* data, unsigned size) {
    android::EffectParamParser parser(data, size);
    if (!parser.validate()) {
        ALOGE("%s() Invalid data for setting parameter values.", __func__);
        return;
    }
    parser.begin();
    // The store is a process-wide singleton that never changes once made: ask for it once rather
    // than on every send, which would take the singleton's lock every time.
    static android::SfxParamStore& store = android::SfxParamStore::getInstance();
    int32_t device = 0;
    int32_t paramId = 0;
    uint32_t count = 0;
    const int32_t* values = nullptr;
    while (parser.next(&device, &paramId, &count, &values)) {
        store.setParam(static_cast<uint32_t>(device), paramId, values, count);
    }
    store.commitChange();
}

int SfxEffect::receive(int /*cmd*/, std::vector<int>& /*blob*/) {
    return 0;
}

}  // namespace korvi
