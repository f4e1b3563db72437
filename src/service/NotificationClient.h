// One registered client: its callback, its type and uid. It is also the death recipient of the
// client's process, so a client that dies leaves the registry.
#pragma once

#include <stdint.h>

#include <hidl/HidlSupport.h>

#include "service/KorviManagerService.h"

namespace android {

class KorviManagerService::NotificationClient : public hardware::hidl_death_recipient {
public:
    NotificationClient(const sp<KorviManagerService>& service, const sp<ITcsCallbacks>& client,
                       int type, uint32_t uid);

    void onSfxParamUpdate(const void* data, uint32_t size);
    void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) override;

    const sp<ITcsCallbacks>& client() const { return mClient; }
    int type() const { return mType; }
    uint32_t uid() const { return mUid; }

private:
    sp<KorviManagerService> mService;
    sp<ITcsCallbacks> mClient;
    int mType;
    uint32_t mUid;
};

}  // namespace android
