#define LOG_TAG "KorviManagerService"

#include "service/KorviManagerService.h"

#include <cutils/properties.h>
#include <log/log.h>
#include <sfxparamstorage/SfxParamStore.h>
#include <unistd.h>
#include <utils/SystemClock.h>

#include <climits>
#include <cstring>
#include <sstream>

#include "service/ClientQuery.h"
#include "service/EventHandler.h"
#include "service/NotificationClient.h"

namespace android {

using korvi::AxManager;
using korvi::ClientQuery;

namespace {

constexpr int kNotInitialised = -19;
constexpr int kInvalidArgument = -22;
constexpr const char* kScenarioProperty = "persist.vendor.audio.scenario";

// Integer query codes, four characters read most significant byte first.
enum IntQuery : uint32_t {
    DCCP = 0x44434350,
    DEAM = 0x4445414D,
    DFSA = 0x44465341,
    DHSA = 0x44485341,
    DDSA = 0x44445341,
    DVLA = 0x44564C41,
    SFXO = 0x5346584F,
    ADEV = 0x41444556,
    TCHC = 0x43484354,
    LCTM = 0x4C43544D,
    LCTP = 0x4C435450,
    APMO = 0x41504D4F,
    GDEA = 0x47444541,
    DTFV = 0x44544656,
    SPKM = 0x53504B4D,
    SPKP = 0x53504B50,
};

bool isValidPort(int port) { return port >= 0 && port < korvi::kPortCount; }

// One part of a "major.minor.maintenance" text: decimal digits only. Values past INT_MAX are
// held at INT_MAX, which is over the limit of 999 all the same.
bool parseVersionPart(const std::string& text, int* value) {
    if (text.empty()) return false;
    long long number = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return false;
        number = std::min<long long>(number * 10 + (c - '0'), INT_MAX);
    }
    *value = static_cast<int>(number);
    return true;
}

}  // namespace

KorviManagerService::KorviManagerService() {
    if (property_get_int32(kScenarioProperty, -1) == -1) property_set(kScenarioProperty, "4");
}

KorviManagerService::~KorviManagerService() {
    if (mEventHandler != nullptr) mEventHandler->stop();
    {
        Mutex::Autolock lock(mLock);
        mClients.clear();
    }
    mManager.reset();
}

void KorviManagerService::onFirstRef() {
    ALOGI("%s ", "onFirstRef");
    mManager = std::make_unique<AxManager>();
    mEventHandler = new EventHandler(mManager.get(), this);
    mEventHandler->start();
}

int KorviManagerService::registerClient(const sp<ITcsCallbacks>& client, int type, uint32_t uid) {
    {
        // The first registration brings the service state up.
        std::lock_guard<std::mutex> initLock(mInitLock);
        if (!mInitialised && mManager->init() == 0) mInitialised = true;
    }
    ALOGD("%s(type = %d, uid = %u) entry", __func__, type, uid);
    if (client == nullptr) {
        ALOGW("%s got NULL client", __func__);
        return kInvalidArgument;
    }
    {
        Mutex::Autolock lock(mLock);
        if (mClients.indexOfKey(uid) < 0) {
            sp<NotificationClient> entry = new NotificationClient(this, client, type, uid);
            client->linkToDeath(entry, uid);
            mClients.add(uid, entry);
            ALOGV("registerClient() client %p, uid %d", client.get(), uid);
            if (isDecoderType(type)) ++mDecoderClientCount;
        } else {
            // The first registration of a uid keeps its callback.
            ALOGW("register uid already existing 0x%x", uid);
        }
    }
    // Every client, the new one included, is told to refresh its view of all parameters. The
    // notification runs on the handler thread after every message posted before it.
    const int32_t refreshAll[2] = {-1, 0};
    mEventHandler->sendMessage(refreshAll, sizeof(refreshAll), EventHandler::kRegisterClient);
    if (isDecoderType(type)) {
        mLastCodecType = type;
        ALOGD("Last registered codec type is %d", type);
    } else if (type == kGameType) {
        mGameRegistered = true;
        ALOGD("Game SFX registered");
    }
    ALOGD("%s(type = %d, uid = %u) exit", __func__, type, uid);
    return 0;
}

int KorviManagerService::unregisterClient(const sp<ITcsCallbacks>& client, int type,
                                          uint32_t uid) {
    ALOGD("%s(type = %d, uid = %u) entry", __func__, type, uid);
    int removedType;
    bool gameLeft = false;
    {
        Mutex::Autolock lock(mLock);
        ssize_t index = mClients.indexOfKey(uid);
        if (index < 0) {
            ALOGE("unregisterClient() client %p, uid %d does not exist in Korvi Server",
                  client.get(), uid);
            return kInvalidArgument;
        }
        sp<NotificationClient> entry = mClients.valueAt(index);
        removedType = entry->type();
        if (isDecoderType(removedType)) --mDecoderClientCount;
        mClients.removeItemsAt(index);
        entry->client()->unlinkToDeath(entry);
        for (size_t i = 0; i < mClients.size(); ++i) {
            if (mClients.valueAt(i)->type() == kGameType) gameLeft = true;
        }
    }
    if (removedType == kGameType) {
        mGameRegistered = gameLeft;
        ALOGD("Game SFX registered status: %d", gameLeft ? 1 : 0);
    } else if (!isDecoderType(removedType) && mInitialised) {
        // An ordinary client's changes are on disk once it has left.
        mManager->saveAxStateAndSettings();
    }
    ALOGD("%s(type = %d, uid = %u) exit", __func__, type, uid);
    return 0;
}

void KorviManagerService::removeNotificationClient(uint32_t uid) {
    ALOGD("%s(uid = %u) entry", __func__, uid);
    {
        Mutex::Autolock lock(mLock);
        ssize_t index = mClients.indexOfKey(uid);
        if (index >= 0) {
            if (isDecoderType(mClients.valueAt(index)->type())) --mDecoderClientCount;
            // Deliberately neither a save nor a new look at the game flag: a client that died
            // leaves no changes behind to keep, and its game flag stays until an ordinary
            // unregistration of a game client.
            mClients.removeItemsAt(index);
        }
    }
    ALOGD("%s(uid = %u) exit", __func__, uid);
}

void KorviManagerService::doOnSfxParamUpdate(const void* data, uint32_t size) {
    ALOGD("%s() entry", __func__);
    {
        Mutex::Autolock lock(mLock);
        for (size_t i = 0; i < mClients.size(); ++i) {
            mClients.valueAt(i)->onSfxParamUpdate(data, size);
        }
    }
    ALOGD("%s() exit", __func__);
}

int KorviManagerService::setSfxParam(void* data, uint32_t size) {
    if (!mInitialised) return kNotInitialised;
    mEventHandler->sendMessage(data, size, EventHandler::kSetParam);
    return 0;
}

int KorviManagerService::getSfxParam(void* in, uint32_t inSize, void* out, uint32_t outSize) {
    if (!mInitialised) return kNotInitialised;
    std::lock_guard<std::mutex> state(mStateLock);
    packAndReceiveParam(in, inSize, out, outSize);
    return 0;
}

void KorviManagerService::answerValues(const std::vector<int>& values, void* out,
                                       uint32_t outSize) {
    if (!ClientQuery::writeValues(values, out, outSize)) {
        ALOGE("%s : Invalid output length, not enough buffer!", "packAndReceiveParam");
    }
}

void KorviManagerService::answerValue(int32_t value, void* out, uint32_t outSize) {
    if (!ClientQuery::writeValue(value, out, outSize)) {
        ALOGE("%s : Invalid output length, not enough buffer!", "packAndReceiveParam");
    }
}

void KorviManagerService::packAndReceiveParam(const void* in, uint32_t inSize, void* out,
                                              uint32_t outSize) {
    ClientQuery query = ClientQuery::decode(in, inSize);
    if (query.status() == ClientQuery::INPUT_TOO_SHORT) {
        ALOGE("%s : Invalid input length!", __func__);
        return;
    }
    if (query.status() != ClientQuery::OK) return;
    switch (query.query()) {
        case ClientQuery::QUERY_ON_OFF: {
            // getAxOn() itself says that the effect is suspended; a suspended effect's state is
            // not answered at all.
            bool suspended = mManager->getAxSuspended();
            bool on = mManager->getAxOn();
            if (!suspended) answerValue(on ? 1 : 0, out, outSize);
            break;
        }
        case ClientQuery::QUERY_PARAMETER:
            answerValues(mManager->getParameter(query.profileId(), query.paramId()), out, outSize);
            break;
        case ClientQuery::QUERY_PORT_PARAMETER:
            answerValues(mManager->getProfilePortParameter(query.profileId(), query.port(),
                                                           query.paramId()),
                         out, outSize);
            break;
        case ClientQuery::QUERY_PROFILE_COUNT:
            answerValue(mManager->getNumOfProfiles(), out, outSize);
            break;
        case ClientQuery::QUERY_IEQ_PRESET_COUNT:
            answerValue(mManager->getNumOfIeqPresets(), out, outSize);
            break;
        case ClientQuery::QUERY_SELECTED_PROFILE:
            answerValue(mManager->getSelectedProfile(), out, outSize);
            break;
        case ClientQuery::QUERY_PROFILE_MODIFIED: {
            int profile = query.profileId();
            if (profile >= 0 && profile < mManager->getNumOfProfiles()) {
                answerValue(mManager->isProfileModified(profile) ? 1 : 0, out, outSize);
            }
            break;
        }
        case ClientQuery::QUERY_MONO_SPEAKER:
            answerValue(mManager->isMonoInternalSpeaker() ? 1 : 0, out, outSize);
            break;
        default:
            break;  // queries 5-9 and 12 have no answer
    }
}

void KorviManagerService::setIntParam(uint32_t id, long /*value*/) {
    if (id != kReloadTuningFile) return;
    ALOGD("Notify clients that SFX params changed after reload tuning file.");
    int reloaded;
    {
        std::lock_guard<std::mutex> state(mStateLock);
        reloaded = AxManager::reloadTuningXml();
    }
    if (reloaded == 0) doOnSfxParamUpdate(nullptr, 0);
}

long KorviManagerService::getIntParam(uint32_t id) {
    switch (id) {
        case DCCP: return hasDecCP() ? 1 : 0;
        case DEAM: return getDialogEnhancerAmount();
        case DFSA: return getTuningParamDFSA();
        case DHSA: return getTuningParamDHSA();
        case DDSA: return getTuningParamDSA();
        case DVLA: return getVolumeLevelerAount();
        case SFXO: return getSfxEnabled() ? 1 : 0;
        case ADEV: return getActiveDevice();
        case TCHC: return mSecondValue.load();
        case LCTM: return static_cast<long>(mLastCallTime.load());
        case LCTP: return static_cast<long>(mLastCodecType.load());
        case APMO: return isMobilityProfileSelected() ? 1 : 0;
        case GDEA: return mGameRegistered.load() ? 1 : 0;
        case DTFV: return getDefaultXmlFormatVersion();
        case SPKM: return isMonoInternalSpeaker() ? 1 : 0;
        case SPKP: return isSpeakerPortraitMode() ? 1 : 0;
        default: return -1;
    }
}

korvi::Port KorviManagerService::activePort() const {
    int32_t device = mActiveDevice.load();
    for (const auto& [port, portDevice] : korvi::kPortDevicePairs) {
        if (static_cast<int32_t>(portDevice) == device) return port;
    }
    // The active device is the speaker unless a host changed it to one without a port.
    return korvi::PORT_INTERNAL_SPEAKER;
}

int KorviManagerService::getTuningParamDSA() {
    if (!mInitialised) return -1;
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->getTuningParamDSA(activePort());
}

int KorviManagerService::getTuningParamDHSA() {
    if (!mInitialised) return -1;
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->getTuningParamDHSA(activePort());
}

int KorviManagerService::getTuningParamDFSA() {
    if (!mInitialised) return -1;
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->getTuningParamDFSA(activePort());
}

int KorviManagerService::getVolumeLevelerAount() {
    if (!mInitialised) return 0;
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->getVolumeLevelerAount(activePort());
}

bool KorviManagerService::isMonoInternalSpeaker() {
    if (!mInitialised) return false;
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->isMonoInternalSpeaker();
}

bool KorviManagerService::isSpeakerPortraitMode() {
    if (!mInitialised) return false;
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->isSpeakerPortraitMode();
}

int KorviManagerService::getDialogEnhancerAmount() {
    if (!mInitialised) return 0;
    std::lock_guard<std::mutex> state(mStateLock);
    // Client id 108 is the dialog-enhancer amount of a profile endpoint.
    constexpr int kDialogEnhancerAmountId = 108;
    std::vector<int> values = mManager->getProfilePortParameter(
            mManager->getSelectedProfile(), activePort(), kDialogEnhancerAmountId);
    return values.empty() ? 0 : values[0];
}

bool KorviManagerService::isMobilityProfileSelected() {
    if (!mInitialised) return false;
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->isMobilityProfileSelected();
}

bool KorviManagerService::getSfxEnabled() {
    if (!mInitialised) return false;
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->getAxOn();
}

long KorviManagerService::getDefaultXmlFormatVersion() {
    if (!mInitialised) return kNotInitialised;
    std::string text = AxManager::getDefaultXmlFormatVersion();
    std::vector<std::string> parts;
    std::stringstream stream(text);
    for (std::string part; std::getline(stream, part, '.');) parts.push_back(part);
    if (!text.empty() && text.back() == '.') parts.emplace_back();
    int numbers[3] = {0, 0, 0};
    if (parts.size() != 3 || !parseVersionPart(parts[0], &numbers[0]) ||
        !parseVersionPart(parts[1], &numbers[1]) || !parseVersionPart(parts[2], &numbers[2])) {
        ALOGE("XML version %s is not in Major.Minor.Maintain format!", text.c_str());
        return kInvalidArgument;
    }
    if (numbers[0] > 999 || numbers[1] > 999 || numbers[2] > 999) {
        ALOGE("XML version %d.%d.%d is invalid!", numbers[0], numbers[1], numbers[2]);
        return kInvalidArgument;
    }
    return numbers[0] * 1000000L + numbers[1] * 1000L + numbers[2];
}

std::string KorviManagerService::getProfileName(int id) {
    if (!mInitialised) return std::string();
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->getProfileName(id);
}

std::string KorviManagerService::getIeqPresetName(int presetId) {
    if (!mInitialised) return std::string();
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->getIeqPresetName(presetId);
}

int KorviManagerService::getAvailableTuningDevicesLen(int port) {
    if (!mInitialised) return kNotInitialised;
    if (!isValidPort(port)) {
        ALOGE("%s invalid port number, %d", __func__, port);
        return kInvalidArgument;
    }
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->getAvailableTuningDevicesLen(static_cast<korvi::Port>(port));
}

int KorviManagerService::getAvailableTuningDevices(int port, void* buf, int len) {
    if (!mInitialised) return kNotInitialised;
    if (!isValidPort(port)) {
        ALOGE("%s invalid port number, %d", __func__, port);
        return kInvalidArgument;
    }
    std::vector<std::string> names;
    {
        std::lock_guard<std::mutex> state(mStateLock);
        names = mManager->getAvailableTuningDevices(static_cast<korvi::Port>(port));
    }
    std::string packed;
    for (const std::string& name : names) packed.append(name.c_str(), name.size() + 1);
    if (buf == nullptr || len < 0 || packed.size() > static_cast<size_t>(len)) {
        ALOGE("%s not enough buffer for transferring device name lists for port %d", __func__,
              port);
        return kInvalidArgument;
    }
    memcpy(buf, packed.data(), packed.size());
    return 0;
}

std::string KorviManagerService::getSelectedTuningDevice(int port) {
    if (!mInitialised) return std::string();
    if (!isValidPort(port)) {
        ALOGE("%s invalid port number, %d", __func__, port);
        return std::string();
    }
    std::lock_guard<std::mutex> state(mStateLock);
    return mManager->getSelectedTuningName(static_cast<korvi::Port>(port));
}

int KorviManagerService::setSelectedTuningDevice(int port, void* name, int len) {
    if (!mInitialised) return kNotInitialised;
    if (!isValidPort(port)) {
        ALOGE("%s invalid port number, %d", __func__, port);
        return kInvalidArgument;
    }
    if (len < 0 || (name == nullptr && len > 0)) return kInvalidArgument;
    mEventHandler->sendMessage(name, static_cast<uint32_t>(len), port, EventHandler::kSetTuning);
    return 0;
}

int KorviManagerService::setParam(uint32_t device, int32_t id, const int* values, uint32_t count) {
    return SfxParamStore::getInstance().setParam(device, id, values, count);
}

int KorviManagerService::commitChange() { return SfxParamStore::getInstance().commitChange(); }

int KorviManagerService::getStoredParams(KeyedVector<uint32_t, SfxParamCache*>* params,
                                         bool onlyChanged, int* version) {
    return SfxParamStore::getInstance().getStoredParams(params, onlyChanged, version);
}

int32_t KorviManagerService::getActiveDevice() {
    mLastCallTime = uptimeMillis();
    return mActiveDevice.load();
}

void KorviManagerService::dumpPermissionDenial(int fd) {
    // Deliberately empty: the message buffer of a denied dump is never filled, so the caller
    // receives zero bytes. Clients rely on a denied dump saying nothing.
    char message[256] = {};
    ssize_t written = write(fd, message, strlen(message));
    (void)written;
}

}  // namespace android
