// Client callback interface of vendor.korvi.hardware.tcs@2.0: the service pushes parameter
// changes to registered clients through it.
#pragma once

#include <stdint.h>

#include <hidl/HidlSupport.h>
#include <hidl/Status.h>

namespace vendor {
namespace korvi {
namespace hardware {
namespace tcs {
namespace V2_0 {

struct ITcsCallbacks : public ::android::hidl::base::V1_0::IBase {
    virtual ::android::hardware::Return<void> onSfxParamUpdate(
            const ::android::hardware::hidl_vec<uint8_t>& data) = 0;
};

}  // namespace V2_0
}  // namespace tcs
}  // namespace hardware
}  // namespace korvi
}  // namespace vendor
