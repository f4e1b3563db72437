#define LOG_TAG "KorviManagerService"

#include "service/NotificationClient.h"

#include <log/log.h>

namespace android {

KorviManagerService::NotificationClient::NotificationClient(const sp<KorviManagerService>& service,
                                                            const sp<ITcsCallbacks>& client,
                                                            int type, uint32_t uid)
    : mService(service), mClient(client), mType(type), mUid(uid) {}

void KorviManagerService::NotificationClient::onSfxParamUpdate(const void* data, uint32_t size) {
    hardware::hidl_vec<uint8_t> bytes;
    if (data != nullptr && size > 0) {
        // Wrapped, not copied: the payload outlives the call.
        bytes.setToExternal(static_cast<uint8_t*>(const_cast<void*>(data)), size);
    }
    hardware::Return<void> result = mClient->onSfxParamUpdate(bytes);
    if (!result.isOk()) ALOGE("Call client failed on %d", mUid);
}

void KorviManagerService::NotificationClient::serviceDied(
        uint64_t /*cookie*/, const wp<hidl::base::V1_0::IBase>& /*who*/) {
    mService->removeNotificationClient(mUid);
    ALOGE("binderDied : client uid %d", mUid);
}

}  // namespace android
