// The settings service as the interface glue of the hosting process meets it. Writes (parameter
// requests, tuning selections) are queued to the event handler's thread and return at once;
// reads are answered on the caller's thread; registered clients hear of every change.
//
// A caller that needs to know the handler has caught up with its writes registers a client
// again: that registration's refresh notification is handled after every earlier message.
#pragma once

#include <stdint.h>

#include <hidl/HidlSupport.h>
#include <utils/KeyedVector.h>
#include <utils/Mutex.h>
#include <utils/RefBase.h>
#include <vendor/korvi/hardware/tcs/2.0/ITcsCallbacks.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <string>

#include "model/Port.h"
#include "service/AxManager.h"

namespace android {

class SfxParamCache;

class KorviManagerService : public virtual RefBase {
public:
    class EventHandler;
    class NotificationClient;
    using ITcsCallbacks = ::vendor::korvi::hardware::tcs::V2_0::ITcsCallbacks;

    // Integer query codes of getIntParam / setIntParam: four characters read most significant
    // byte first.
    static constexpr uint32_t kReloadTuningFile = 0x524C5446;  // "RLTF"

    KorviManagerService();

    int registerClient(const sp<ITcsCallbacks>& client, int type, uint32_t uid);
    int unregisterClient(const sp<ITcsCallbacks>& client, int type, uint32_t uid);
    void removeNotificationClient(uint32_t uid);
    // Calls every registered client in uid order with the payload; runs on the handler thread,
    // or on the caller's thread for a reload.
    void doOnSfxParamUpdate(const void* data, uint32_t size);

    int setSfxParam(void* data, uint32_t size);
    int getSfxParam(void* in, uint32_t inSize, void* out, uint32_t outSize);
    void setIntParam(uint32_t id, long value);
    long getIntParam(uint32_t id);

    std::string getProfileName(int id);
    std::string getIeqPresetName(int presetId);
    int getAvailableTuningDevicesLen(int port);
    int getAvailableTuningDevices(int port, void* buf, int len);
    std::string getSelectedTuningDevice(int port);
    int setSelectedTuningDevice(int port, void* name, int len);

    // Tuning queries for the port of the active device.
    int getTuningParamDSA();
    int getTuningParamDHSA();
    int getTuningParamDFSA();
    int getVolumeLevelerAount();
    bool isMonoInternalSpeaker();
    bool isSpeakerPortraitMode();
    int getDialogEnhancerAmount();
    bool isMobilityProfileSelected();
    bool getSfxEnabled();
    bool hasDecCP() const { return mDecoderClientCount.load() != 0; }
    long getDefaultXmlFormatVersion();

    // Straight to the shared parameter store, for hosts that write it themselves.
    int setParam(uint32_t device, int32_t id, const int* values, uint32_t count);
    int commitChange();
    int getStoredParams(KeyedVector<uint32_t, SfxParamCache*>* params, bool onlyChanged,
                        int* version);

    int32_t getActiveDevice();
    void dumpPermissionDenial(int fd);

    bool isInitialised() const { return mInitialised.load(); }

protected:
    ~KorviManagerService() override;
    void onFirstRef() override;

private:
    friend class EventHandler;

    void packAndReceiveParam(const void* in, uint32_t inSize, void* out, uint32_t outSize);
    void answerValues(const std::vector<int>& values, void* out, uint32_t outSize);
    void answerValue(int32_t value, void* out, uint32_t outSize);
    korvi::Port activePort() const;
    // Whether the uid's client is one that counts as a decoder (types 1 to 4).
    static bool isDecoderType(int type) { return type >= 1 && type <= 4; }
    static constexpr int kGameType = 7;

    KeyedVector<uint32_t, sp<NotificationClient>> mClients;  // by uid, guarded by mLock
    sp<EventHandler> mEventHandler;
    Mutex mLock;
    std::atomic<int32_t> mDecoderClientCount{0};
    std::unique_ptr<korvi::AxManager> mManager;
    std::atomic<bool> mInitialised{false};
    std::mutex mInitLock;  // one initialisation even when two clients register at once
    // Serialises the handler thread's changes of the state with the reads of binder threads.
    // The context guards each of its own calls, but its getters hand out references into its
    // records, which their callers copy after the context's lock is released. Saves are made
    // outside this lock: they only read values, so reads never wait for the database.
    std::mutex mStateLock;
    std::atomic<int32_t> mActiveDevice{2};
    std::atomic<int32_t> mSecondValue{2};
    std::atomic<int64_t> mLastCodecType{-1};
    std::atomic<int64_t> mLastCallTime{-1000};
    std::atomic<bool> mGameRegistered{false};
};

}  // namespace android
