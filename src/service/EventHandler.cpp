#define LOG_TAG "KorviManagerService"

#include "service/EventHandler.h"

#include <log/log.h>
#include <media/stagefright/foundation/ABuffer.h>

#include <cstring>
#include <string>

#include "service/ClientRequest.h"

namespace android {

using korvi::ClientRequest;

KorviManagerService::EventHandler::EventHandler(korvi::AxManager* manager,
                                                KorviManagerService* service)
    : mManager(manager), mService(service), mLooper(new ALooper()) {
    mLooper->setName("KorviManagerService EventHandler");
}

void KorviManagerService::EventHandler::start() {
    mLooper->registerHandler(this);
    mLooper->start(false, false, 0);
}

void KorviManagerService::EventHandler::stop() {
    mLooper->unregisterHandler(id());
    mLooper->stop();
}

namespace {

// A copy of the caller's bytes, so that the caller may reuse its memory at once.
sp<ABuffer> copyOf(const void* data, uint32_t size) {
    sp<ABuffer> buffer = new ABuffer(data != nullptr ? size : 0);
    if (buffer->size() > 0) memcpy(buffer->data(), data, buffer->size());
    return buffer;
}

}  // namespace

// The message is the buffer's only owner once posted: the handler thread may be the last to
// use it.
void KorviManagerService::EventHandler::sendMessage(const void* data, uint32_t size,
                                                     uint32_t what) {
    sp<AMessage> msg = new AMessage(what, this);
    msg->setBuffer("buffer", copyOf(data, size));
    msg->post();
}

void KorviManagerService::EventHandler::sendMessage(const void* data, uint32_t size, int port,
                                                     uint32_t what) {
    sp<AMessage> msg = new AMessage(what, this);
    msg->setBuffer("buffer", copyOf(data, size));
    msg->setInt32("port", port);
    msg->post();
}

void KorviManagerService::EventHandler::onMessageReceived(const sp<AMessage>& msg) {
    sp<ABuffer> buffer;
    if (!msg->findBuffer("buffer", &buffer) || buffer == nullptr) return;
    switch (msg->what()) {
        case kSetParam:
            parseAndSendParam(buffer->data(), buffer->size());
            break;
        case kSetTuning: {
            int32_t port = 0;
            if (msg->findInt32("port", &port)) onSetTuning(buffer, port);
            break;
        }
        case kRegisterClient:
            mService->doOnSfxParamUpdate(buffer->data(), buffer->size());
            break;
        default:
            break;
    }
}

void KorviManagerService::EventHandler::onSetTuning(const sp<ABuffer>& buffer, int32_t port) {
    // The name arrives without a terminating zero; a client that sends one anyway means the
    // name before it.
    const char* bytes = reinterpret_cast<const char*>(buffer->data());
    std::string name(bytes, strnlen(bytes, buffer->size()));
    std::lock_guard<std::mutex> state(mService->mStateLock);
    mManager->setSelectedTuning(static_cast<korvi::Port>(port), name);
}

void KorviManagerService::EventHandler::parseAndSendParam(const void* data, uint32_t size) {
    ClientRequest request = ClientRequest::decode(data, size);
    if (request.status() == ClientRequest::NO_EVENT_WORD) {
        ALOGE("%s: request of %u bytes has no event word", __func__, size);
        return;
    }
    ALOGD("send para event 0x%x", request.eventWord());
    if (request.status() == ClientRequest::HEADER_TOO_SHORT) {
        ALOGE("%s: request of %u bytes is too short for event %d", __func__, size,
              request.event());
        return;
    }
    if (request.status() != ClientRequest::OK) return;  // not an event, or a reserved one

    std::vector<int> values = request.values();
    int profile = request.word1();
    std::unique_lock<std::mutex> state(mService->mStateLock);
    switch (request.event()) {
        case ClientRequest::EVENT_ON_OFF:
            mManager->setAxOn(request.word1() >= 1);
            state.unlock();
            mManager->saveAxState();
            break;
        case ClientRequest::EVENT_SET_PARAMETER:
            mManager->setParameter(profile, request.paramId(), values);
            break;
        case ClientRequest::EVENT_SET_PORT_PARAMETER:
            mManager->setProfilePortParameter(profile, request.port(), request.paramId(), values);
            break;
        case ClientRequest::EVENT_SAVE:
            state.unlock();
            ALOGD("save settings");
            mManager->saveAxStateAndSettings();
            break;
        case ClientRequest::EVENT_SELECT_PROFILE:
            ALOGD("set profile %d", profile);
            if (profile >= 0 && profile < mManager->getNumOfProfiles() &&
                mManager->setSelectedProfile(profile) &&
                mManager->getSelectedProfile() == profile) {
                state.unlock();
                mManager->saveAxProfile();
            }
            break;
        case ClientRequest::EVENT_RESET_PROFILE:
            if (profile >= 0 && profile < mManager->getNumOfProfiles()) {
                mManager->resetProfile(profile);
            }
            break;
        default:
            break;
    }
}

}  // namespace android
