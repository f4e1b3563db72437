// Reads the shared store into plain maps (device -> id -> values) and releases the caches, so
// tests can compare whole store contents at once.
#pragma once

#include <sfxparamstorage/SfxParamStore.h>

#include <cstdint>
#include <map>
#include <vector>

namespace korvi::test {

using StoreContents = std::map<uint32_t, std::map<int32_t, std::vector<int32_t>>>;

inline StoreContents readStore(bool onlyChanged, int* version, int* status = nullptr) {
    android::KeyedVector<uint32_t, android::SfxParamCache*> params;
    const int result = android::SfxParamStore::getInstance().getStoredParams(&params, onlyChanged, version);
    if (status != nullptr) {
        *status = result;
    }
    StoreContents contents;
    for (size_t i = 0; i < params.size(); ++i) {
        contents[params.keyAt(i)] = params.valueAt(i)->params();
    }
    android::SfxParamStore::releaseStoredParams(&params);
    return contents;
}

inline StoreContents readStore() {
    int version = 0;
    return readStore(false, &version);
}

}  // namespace korvi::test
