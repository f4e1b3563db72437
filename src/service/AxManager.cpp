#define LOG_TAG "AxManager"

#include "service/AxManager.h"

#include <log/log.h>
#include <utils/Mutex.h>
#include <utils/String16.h>

#include "context/AxContext.h"
#include "context/AxContextManager.h"
#include "effect/SfxController.h"
#include "effect/SfxEffect.h"
#include "service/ParameterAdapter.h"

namespace korvi {

namespace {

// The id the controller is created with; the controller keeps it as an opaque identifier.
constexpr int kControllerId = 2;
// Client ids of the bass-enhancer switch and of the virtual-bass switch that follows it.
constexpr int kBassEnhancerEnableId = 111;
constexpr int kVirtualBassEnableId = 112;
constexpr int kFirstClientParamId = 100;
// Port numbers a client may name for a profile-endpoint value: the six ports and "other".
constexpr int kClientPortCount = kPortCount + 1;

int firstValue(const std::vector<int>& values) {
    return values.empty() ? 0 : values.front();
}

bool isPort(Port port) {
    return port >= 0 && port < kPortCount;
}

}  // namespace

AxManager::AxManager() = default;

AxManager::AxManager(std::unique_ptr<SfxController> controller, AxContext* context)
    : mController(std::move(controller)), mContext(context) {}

AxManager::~AxManager() {
    // The context outlives this manager; a controller left registered there would be called
    // after its death. A context that was released meanwhile has no registry left to clean.
    if (mRegistered && AxContextManager::getInstance().getAxContext() == mContext) {
        mContext->unregisterObserver(mController.get());
    }
    mController.reset();
    mAdapter.reset();
    mEffect.reset();
}

int AxManager::init() {
    AxContext* context = AxContextManager::getInstance().getAxContext();
    if (context == nullptr) {
        return -19;
    }
    if (mRegistered) {
        mContext->unregisterObserver(mController.get());
        mRegistered = false;
    }
    // A second start builds the effect side afresh; the old controller goes before its effect.
    mController.reset();
    mAdapter.reset();
    mContext = context;
    mSessionId = 0;
    makeSfxEffect();
    ALOGI("Created SFX effect version [ %d ]", 0);
    mController = std::make_unique<SfxController>(kControllerId, *mEffect);
    // Registration also calls the controller's onLoad, which pushes the whole state to the
    // effect once.
    mContext->registerObserver(mController.get());
    mRegistered = true;
    mAdapter = std::make_unique<ParameterAdapter>(mContext);
    return 0;
}

void AxManager::makeSfxEffect() {
    if (mSessionId < 0) {
        // Reported but kept: the effect does not use the session.
        ALOGE("SFX effect with specified session Id (%d) is less than zero", mSessionId);
    }
    mEffect = std::make_unique<SfxEffect>(mSessionId, android::String16("SfxEffect"));
}

void AxManager::replaceSfxEffect() {
    const std::unique_ptr<SfxEffect> previous = std::move(mEffect);
    makeSfxEffect();
    // The controller must never keep sending to a handle that is gone, so a new handle always
    // reaches it (with a full send) before the old one is deleted.
    if (mController != nullptr && mContext != nullptr) {
        mController->setSfxEffect(*mEffect, *mContext);
    }
}

void AxManager::createSfxEffect(int sessionId) {
    mSessionId = sessionId;
    replaceSfxEffect();
}

bool AxManager::recreateAxEffect() {
    replaceSfxEffect();
    return true;
}

bool AxManager::validateAxEffect() {
    return true;
}

void AxManager::setAxOn(bool on) {
    mContext->setSfxOn(on);
}

bool AxManager::getAxOn() {
    if (mSuspended) {
        ALOGI("AX effect is now suspended");
        return false;
    }
    return mContext->getSfxOn();
}

void AxManager::setAxSuspended(bool suspended) {
    android::Mutex::Autolock lock(mContext->getLock());
    if (mSuspended != suspended) {
        mSuspended = suspended;
    }
}

bool AxManager::getAxSuspended() {
    return mSuspended;
}

std::string AxManager::getAxVersion() {
    return "AX_VERSION_EXTERNAL";
}

int AxManager::getNumOfProfiles() {
    return mContext->getNumOfProfiles();
}

int AxManager::getNumOfIeqPresets() {
    return mContext->getNumOfIeqPresets();
}

bool AxManager::isValidProfileId(int id) {
    return id >= 0 && id < mContext->getNumOfProfiles();
}

bool AxManager::setSelectedProfile(int id) {
    if (!isValidProfileId(id)) {
        return false;
    }
    mContext->setSelectedProfile(id);
    return true;
}

bool AxManager::resetProfile(int id) {
    if (!isValidProfileId(id)) {
        return false;
    }
    mContext->resetProfile(id);
    return true;
}

bool AxManager::isProfileModified(int id) {
    return isValidProfileId(id) && mContext->isProfileModified(id);
}

int AxManager::getSelectedProfile() {
    return mContext->getSelectedProfile();
}

std::string AxManager::getProfileName(int id) {
    if (!isValidProfileId(id)) {
        ALOGE("Invalid Profile Id!");
        return "";
    }
    return mContext->getProfile(id)->getName();
}

int AxManager::getProfileNameLen(int id) {
    return static_cast<int>(mContext->getProfile(id)->getName().size()) + 1;
}

std::string AxManager::getIeqPresetName(int presetId) {
    return mContext->getIeqPresetName(presetId);
}

bool AxManager::isMobilityProfileSelected() {
    Profile* profile = mContext->getProfile(mContext->getSelectedProfile());
    android::Mutex::Autolock lock(mContext->getLock());
    return profile->isMobility();
}

std::vector<int> AxManager::getProfileParameter(int id, Parameter parameter) {
    return mContext->getProfileParameter(id, parameter);
}

bool AxManager::setParameter(int profileId, int paramId, std::vector<int>& values) {
    if (paramId < kFirstClientParamId || !isValidProfileId(profileId) ||
        values.empty()) {
        return false;
    }
    mAdapter->setParameter(profileId, paramId, values);
    if (paramId == kBassEnhancerEnableId) {
        // The virtual-bass switch always follows the bass-enhancer switch, with the values the
        // first set already clamped.
        mAdapter->setParameter(profileId, kVirtualBassEnableId, values);
    }
    return true;
}

std::vector<int> AxManager::getParameter(int profileId, int paramId) {
    if (paramId < kFirstClientParamId || !isValidProfileId(profileId)) {
        return {};
    }
    return mAdapter->getParameter(profileId, paramId);
}

int AxManager::getParamLength(int paramId) {
    if (paramId < kFirstClientParamId) {
        ALOGE("Invalid paramId!");
        return 0;
    }
    return mAdapter->getParameterLength(paramId);
}

std::vector<int> AxManager::getProfilePortParameter(int profileId, int port, int paramId) {
    if (port < 0 || port >= kClientPortCount) {
        ALOGE("Invalid Port!");
        return {};
    }
    const Endpoint endpoint = kPortNameToEndpoint.at(kPortNames[port]);
    if (paramId < kFirstClientParamId || !isValidProfileId(profileId)) {
        return {};
    }
    return mAdapter->getProfileEndpointParameter(profileId, endpoint, paramId);
}

bool AxManager::setProfilePortParameter(int profileId, int port, int paramId,
                                        std::vector<int>& values) {
    if (port < 0 || port >= kClientPortCount) {
        ALOGE("Invalid Port!");
        return false;
    }
    const Endpoint endpoint = kPortNameToEndpoint.at(kPortNames[port]);
    if (paramId < kFirstClientParamId || !isValidProfileId(profileId) ||
        values.empty()) {
        return false;
    }
    mAdapter->setProfileEndpointParameter(profileId, endpoint, paramId, values);
    if (paramId == kBassEnhancerEnableId) {
        mAdapter->setProfileEndpointParameter(profileId, endpoint, kVirtualBassEnableId, values);
    }
    return true;
}

std::vector<std::string> AxManager::getAvailableTuningDevices(Port port) {
    if (!isPort(port)) {
        ALOGE("Invalid Port!");
        return {};
    }
    return mContext->getAvailableTuningDevice(port);
}

int AxManager::getAvailableTuningDevicesLen(Port port) {
    int length = 0;
    for (const std::string& name : getAvailableTuningDevices(port)) {
        length += static_cast<int>(name.size()) + 1;
    }
    return length;
}

std::string AxManager::getSelectedTuningName(Port port) {
    if (!isPort(port)) {
        ALOGE("Invalid Port!");
        return "";
    }
    return mContext->getSelectedTuningDevice(port);
}

bool AxManager::setSelectedTuning(Port port, const std::string& device) {
    if (!isPort(port)) {
        ALOGE("Invalid Port!");
        return false;
    }
    return mContext->setSelectedTuning(port, device, false);
}

int AxManager::getTuningParamDSA(Port port) {
    return isPort(port) ? firstValue(mContext->getSelectedTuningParameter(
                                  port, VIRTUALIZER_SURROUND_SPEAKER_ANGLE))
                        : 0;
}

int AxManager::getTuningParamDHSA(Port port) {
    return isPort(port) ? firstValue(mContext->getSelectedTuningParameter(
                                  port, VIRTUALIZER_HEIGHT_SPEAKER_ANGLE))
                        : 0;
}

int AxManager::getTuningParamDFSA(Port port) {
    return isPort(port) ? firstValue(mContext->getSelectedTuningParameter(
                                  port, VIRTUALIZER_FRONT_SPEAKER_ANGLE))
                        : 0;
}

int AxManager::getVolumeLevelerAount(Port port) {
    if (!isPort(port)) {
        return 0;
    }
    ProfileEndpoint* endpoint = mContext->getSelectedProfileEndpoint(port);
    if (endpoint == nullptr) {
        return 0;
    }
    android::Mutex::Autolock lock(mContext->getLock());
    return firstValue(endpoint->mValues[VOLUME_LEVELER_AMOUNT]);
}

bool AxManager::isSpeakerPortraitMode() {
    const std::vector<int>& orientation =
            mContext->getSelectedTuningParameter(PORT_INTERNAL_SPEAKER, ORIENTATION);
    return firstValue(orientation) == 0;
}

bool AxManager::isMonoInternalSpeaker() {
    const Tuning* tuning = mContext->getSelectedTuning(PORT_INTERNAL_SPEAKER);
    return tuning != nullptr && tuning->isMono();
}

int AxManager::saveAxStateAndSettings() {
    return mContext->save();
}

int AxManager::saveAxState() {
    return mContext->saveAxState();
}

int AxManager::saveAxProfile() {
    return mContext->saveAxProfile();
}

int AxManager::saveAxProfileSettings() {
    return mContext->saveAxProfileSettings();
}

void AxManager::restoreCurrentProfiles() {
    mContext->reloadAllProfile();
}

int AxManager::reloadTuningXml() {
    ALOGI("Tell AxContextManager to reload tuning XML.");
    return AxContextManager::getInstance().loadOemTuning();
}

std::string AxManager::getDefaultXmlFormatVersion() {
    return AxContextManager::getInstance().getDefaultXmlFormatVersion();
}

}  // namespace korvi
