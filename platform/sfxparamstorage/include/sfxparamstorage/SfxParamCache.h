// One output device's committed effect parameters, as a reader of the shared parameter store gets
// them from SfxParamStore::getStoredParams: parameter id -> values, ordered by id.
//
// A cache is a copy. It does not change when later commits reach the store, and it belongs to
// whoever received it from getStoredParams (release a whole result with
// SfxParamStore::releaseStoredParams, or delete each cache).
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace android {

class SfxParamCache {
public:
    using Params = std::map<int32_t, std::vector<int32_t>>;

    SfxParamCache() = default;
    explicit SfxParamCache(Params params) : mParams(std::move(params)) {}

    // Number of parameters held.
    size_t size() const { return mParams.size(); }
    bool contains(int32_t paramId) const { return mParams.count(paramId) != 0; }
    // The values of one parameter, or null when this cache does not hold it. A held parameter
    // may have an empty value list: the service sends such entries for parameters it has no
    // values for.
    const std::vector<int32_t>* find(int32_t paramId) const {
        auto it = mParams.find(paramId);
        return it == mParams.end() ? nullptr : &it->second;
    }
    // Every parameter held, in ascending id order.
    const Params& params() const { return mParams; }

    void set(int32_t paramId, std::vector<int32_t> values) { mParams[paramId] = std::move(values); }

private:
    Params mParams;
};

}  // namespace android
