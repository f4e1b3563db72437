// The service's one worker thread. Every state-changing client request and every notification
// to clients becomes a message handled here, in posting order, so the context and the effect
// change on one thread only and binder threads never wait for a database write.
#pragma once

#include <stdint.h>

#include <media/stagefright/foundation/AHandler.h>
#include <media/stagefright/foundation/ALooper.h>
#include <media/stagefright/foundation/AMessage.h>

#include "service/KorviManagerService.h"

namespace android {

class KorviManagerService::EventHandler : public AHandler {
public:
    // Message codes: four characters, most significant byte first.
    static constexpr uint32_t kSetParam = 0x73657470;         // "setp"
    static constexpr uint32_t kSetTuning = 0x73657474;        // "sett"
    static constexpr uint32_t kRegisterClient = 0x72656763;   // "regc"

    EventHandler(korvi::AxManager* manager, KorviManagerService* service);

    void start();
    void stop();

    // Copies size bytes into a message of code what and posts it; data may be reused at once.
    void sendMessage(const void* data, uint32_t size, uint32_t what);
    void sendMessage(const void* data, uint32_t size, int port, uint32_t what);

    // Decodes one client request and applies it.
    void parseAndSendParam(const void* data, uint32_t size);

protected:
    void onMessageReceived(const sp<AMessage>& msg) override;

private:
    void onSetTuning(const sp<ABuffer>& buffer, int32_t port);

    korvi::AxManager* mManager;          // owned by the service
    KorviManagerService* mService;       // the owner of this handler
    sp<ALooper> mLooper;
};

}  // namespace android
