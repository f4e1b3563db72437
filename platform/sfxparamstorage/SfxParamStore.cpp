#define LOG_TAG "SfxParamStore"
#include "sfxparamstorage/SfxParamStore.h"

#include <log/log.h>

#include <climits>

ANDROID_SINGLETON_STATIC_INSTANCE(android::SfxParamStore);

namespace android {

namespace {
constexpr int kBadValue = -22;
}

int SfxParamStore::setParam(uint32_t device, int32_t paramId, const int32_t* values, uint32_t count) {
    if (values == nullptr && count != 0) {
        ALOGE("%s() no values for %u values of parameter 0x%08x", __func__, count, static_cast<uint32_t>(paramId));
        return kBadValue;
    }
    std::vector<int32_t> copy;
    if (count != 0) {
        copy.assign(values, values + count);
    }
    std::lock_guard<std::mutex> lock(mLock);
    mStaged[device][paramId] = std::move(copy);
    return 0;
}

int SfxParamStore::commitChange() {
    std::lock_guard<std::mutex> lock(mLock);
    if (mStaged.empty()) {
        return 0;
    }
    // Versions only grow; a reader comparing versions across a wrap would miss changes, so running
    // out of them is a programming error rather than something to paper over.
    LOG_ALWAYS_FATAL_IF(mVersion == INT_MAX, "%s() commit version overflow", __func__);
    ++mVersion;
    for (auto& [device, params] : mStaged) {
        auto& committed = mCommitted[device];
        for (auto& [paramId, values] : params) {
            Committed& entry = committed[paramId];
            entry.values = std::move(values);
            entry.version = mVersion;
        }
    }
    mStaged.clear();
    return 0;
}

int SfxParamStore::getStoredParams(KeyedVector<uint32_t, SfxParamCache*>* out, bool onlyChanged, int* version) {
    if (out == nullptr || version == nullptr || !out->isEmpty()) {
        ALOGE("%s() needs an empty result vector and a version", __func__);
        return kBadValue;
    }
    const int since = onlyChanged ? *version : INT_MIN;
    std::lock_guard<std::mutex> lock(mLock);
    for (const auto& [device, params] : mCommitted) {
        SfxParamCache::Params copy;
        for (const auto& [paramId, entry] : params) {
            if (entry.version > since) {
                copy.emplace(paramId, entry.values);
            }
        }
        if (!copy.empty()) {
            out->add(device, new SfxParamCache(std::move(copy)));
        }
    }
    *version = mVersion;
    return 0;
}

void SfxParamStore::releaseStoredParams(KeyedVector<uint32_t, SfxParamCache*>* params) {
    if (params == nullptr) {
        return;
    }
    for (size_t i = 0; i < params->size(); ++i) {
        delete params->valueAt(i);
    }
    params->clear();
}

void SfxParamStore::clear() {
    std::lock_guard<std::mutex> lock(mLock);
    mStaged.clear();
    mCommitted.clear();
    mVersion = 0;
}

}  // namespace android
