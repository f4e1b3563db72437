#define LOG_TAG "AxContextManager"

#include "context/AxContextManager.h"

#include <fcntl.h>
#include <log/log.h>
#include <openssl/evp.h>
#include <openssl/md5.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <set>

#include "common/DeviceRoot.h"
#include "context/AxContext.h"
#include "context/AxContextChangeObservable.h"
#include "model/Port.h"
#include "store/DatabaseHelper.h"
#include "store/Provider.h"
#include "tuning/DeviceData.h"
#include "tuning/TuningFileParser.h"

ANDROID_SINGLETON_STATIC_INSTANCE(korvi::AxContextManager);

namespace korvi {

std::atomic<int> AxContextManager::sSmartPaType{AxContextManager::kSmartPaNone};

namespace {

bool fileExists(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0;
}

// Owns one open descriptor.
class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : mFd(fd) {}
    ~FileDescriptor() {
        if (mFd >= 0) close(mFd);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const { return mFd; }

private:
    int mFd;
};

std::string toHex(const unsigned char* bytes, size_t count) {
    static const char kDigits[] = "0123456789abcdef";
    std::string text;
    text.reserve(count * 2);
    for (size_t i = 0; i < count; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0x0f];
    }
    return text;
}

// Undoes an unfinished transaction after a failed write, so the database keeps what it held
// before: a partly written rebuild or OEM merge must never become the stored state.
void rollBack(Provider* provider, const char* what) {
    ALOGE("%s failed to reach the database, rolling it back", what);
    provider->getDatabaseHelper()->execSQL("ROLLBACK");
}

}  // namespace

AxContextManager::AxContextManager() {
    init_smartpa_type();
    init();
}

AxContextManager::~AxContextManager() {
    release();
}

int AxContextManager::init_smartpa_type() {
    const std::string path = devicePath(kSmartPaTypeFile);
    FILE* file = fopen(path.c_str(), "r");
    if (file == nullptr) {
        ALOGE("fopen %s failed!", path.c_str());
        return -119;
    }
    char buffer[24] = {};
    fread(buffer, 1, sizeof(buffer), file);
    if (ferror(file)) {
        ALOGE("bytes_read open %s failed!", path.c_str());
        fclose(file);
        return -22;
    }
    // Only the start is compared, so a trailing newline or other bytes do not matter.
    static const struct {
        const char* name;
        int type;
    } kTypes[] = {{"none", kSmartPaNone}, {"aw882xx", kSmartPaAw882xx}, {"fs19xx", kSmartPaFs19xx}};
    for (const auto& entry : kTypes) {
        if (strncmp(buffer, entry.name, strlen(entry.name)) == 0) {
            ALOGI("find: %s \n", entry.name);
            sSmartPaType = entry.type;
            break;
        }
    }
    fclose(file);
    return 0;
}

int AxContextManager::get_smartpa_type() {
    return sSmartPaType;
}

std::string AxContextManager::factoryXmlPath() {
    // aw882xx amplifiers use the same file as devices without a smart amplifier, on purpose.
    return devicePath(sSmartPaType == kSmartPaFs19xx ? kFs19xxXml : kDefaultXml);
}

std::string AxContextManager::getSignature(const std::string& path) {
    FileDescriptor fd(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (fd.get() < 0) return "";
    struct stat st;
    if (fstat(fd.get(), &st) != 0) return "";
    const size_t size = static_cast<size_t>(st.st_size);
    // The one-shot digest of OpenSSL 3 (its MD5() shortcut is deprecated there).
    unsigned char digest[MD5_DIGEST_LENGTH];
    unsigned int length = 0;
    int ok = 0;
    if (size == 0) {
        // An empty file cannot be mapped; its digest is the digest of no bytes.
        ok = EVP_Digest("", 0, digest, &length, EVP_md5(), nullptr);
    } else {
        void* mapped = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd.get(), 0);
        if (mapped == MAP_FAILED) return "";
        ok = EVP_Digest(mapped, size, digest, &length, EVP_md5(), nullptr);
        munmap(mapped, size);
    }
    if (ok != 1 || length != sizeof(digest)) return "";
    const std::string text = toHex(digest, sizeof(digest));
    ALOGD("%s(): XML file md5sum %s", "getSignature", text.c_str());
    return text;
}

void AxContextManager::init() {
    android::Mutex::Autolock lock(mLock);
    const std::string xmlPath = factoryXmlPath();
    ALOGI("smartpa_type: %d", get_smartpa_type());
    if (!fileExists(xmlPath)) {
        ALOGE("Default XML Tuning file doesn't exist!!");
        return;
    }
    mProvider = std::make_unique<Provider>(std::make_unique<DatabaseHelper>(kDatabaseName));
    initDatabase(mProvider.get(), xmlPath);
    // The parser's records are in the database (or were not wanted): start-up no longer needs it.
    mParser.reset();
    // The load reads hundreds of rows one query at a time; inside one read transaction the
    // database is locked (and checked for a journal) once instead of once per query.
    DatabaseHelper* helper = mProvider->getDatabaseHelper();
    const bool reading = helper->execSQL("BEGIN") == 0;
    if (mProvider->init()) {
        mObservable = std::make_unique<AxContextChangeObservable>();
        mContext = std::make_unique<AxContext>(mProvider.get(), mObservable.get());
        mContext->load();
    }
    if (reading) helper->execSQL("COMMIT");
}

void AxContextManager::initDatabase(Provider* provider, const std::string& xmlPath) {
    DeviceData* data = loadXmlIfChanged(xmlPath, provider);
    if (data == nullptr) return;
    data->validateData();
    // The factory rows and the OEM rows are committed together: a start-up cut short between
    // two commits would leave the new signature without the OEM rows, and with the signature
    // unchanged nothing would merge them again at the next start.
    if (!populateDatabase(data, provider)) {
        rollBack(provider, "Rebuilding the database");
        return;
    }
    // Only a failed write matters here: without an OEM file the factory rows stand alone.
    const bool oemWritten = loadOemTuningLocked(true) != kOemWriteFailed;
    ALOGI("Load OEM tuning XML after default tuning XML is reloaded");
    if (!oemWritten || provider->commitTransaction() != 0) {
        rollBack(provider, "Rebuilding the database");
        // The device tunings cached during the merge must follow the rows that stay.
        provider->reloadCachedDeviceTunings();
    }
}

std::string AxContextManager::getChangedSignature(const std::string& xmlPath, Provider* provider) {
    const std::string signature = getSignature(xmlPath);
    const std::string stored = provider->getDefaultXmlSignature();
    if (signature == stored) return "";
    // A database built before holds the user's on/off choice; the rebuild writes this value.
    if (!stored.empty()) Provider::kSfxStateValue = provider->isSfxOn();
    return signature;
}

DeviceData* AxContextManager::loadXmlIfChanged(const std::string& xmlPath, Provider* provider) {
    const std::string signature = getChangedSignature(xmlPath, provider);
    if (signature.empty()) return nullptr;
    ALOGD("Tuning XML file has been updated");
    mParser = std::make_unique<TuningFileParser>();
    if (mParser->setTuningFile(xmlPath) != 0) {
        ALOGE("XML parses error!!");
        return nullptr;
    }
    DeviceData* data = mParser->getDeviceData();
    data->setSignature(signature);
    return data;
}

bool AxContextManager::populateDatabase(DeviceData* data, Provider* provider) {
    // Everything in one transaction, left open for the OEM merge and committed by the caller: a
    // device that loses power half-way boots into the old rows and the old signature (and
    // rebuilds again), never into a mix of both.
    if (provider->beginTransaction() != 0) {
        ALOGE("Cannot start rebuilding the database");
        return false;
    }
    int result = provider->clear();
    result |= provider->initDatabase();
    for (IeqPreset* preset : data->getIeqPresets()) result |= provider->create(preset);
    for (GeqPreset* preset : data->getGeqPresets()) result |= provider->create(preset);
    for (Profile* profile : data->getProfiles()) result |= provider->create(profile);
    for (ProfileEndpoint* endpoint : data->getProfileEndpoints()) result |= provider->create(endpoint);
    for (Tuning* tuning : data->getTunings()) result |= provider->create(tuning, Provider::kDefaultName);
    for (DeviceTuning* device : data->getDeviceTunings()) {
        result |= provider->create(device, Provider::kDefaultName);
    }
    for (Port port : AxContext::kSupportedPorts) {
        const std::string name = kPortNames[port];
        result |= provider->setDeviceTuning(name, "default_" + name);
    }
    result |= provider->setDefaultXmlSignature(data->getSignature());
    result |= provider->setDefaultXmlFormatVersion(data->getFormatVersion());
    return result == 0;
}

int AxContextManager::loadOemTuning() {
    android::Mutex::Autolock lock(mLock);
    if (mProvider == nullptr || mContext == nullptr) {
        ALOGE("%s(): the service state is not up", __func__);
        return kNotInitialized;
    }
    const int result = loadOemTuningLocked();
    // A failed write reloaded the store's device tunings as well (back to the rows that stayed),
    // which frees the tunings the context holds: it must re-read them either way.
    if (result == 0 || result == kOemWriteFailed) mContext->reloadTuning();
    return result;
}

int AxContextManager::loadOemTuningLocked(bool insideRebuild) {
    const std::string oemPath = devicePath(kOemXml);
    if (!fileExists(oemPath)) {
        ALOGE("OEM Tuning XML doesn't exist!");
        return -2;
    }
    ALOGD("Try to load OEM tuning XML file from %s", oemPath.c_str());
    auto oemParser = std::make_unique<TuningFileParser>();
    if (oemParser->setTuningFile(oemPath) != 0) {
        ALOGE("OEM Tuning XML parses error!");
        return -22;
    }
    DeviceData* oem = oemParser->getDeviceData();
    ALOGD("OEM tuning XML file completed deviceData = %p", static_cast<void*>(oem));
    const std::string current = mProvider->getDefaultXmlFormatVersion();
    if (oem->getFormatVersion() != current) {
        ALOGE("OEM tuning format V=%s is not consistent with current V=%s, abort loading OEM "
              "tuning XML.",
              oem->getFormatVersion().c_str(), current.c_str());
        return -22;
    }

    // The factory names, to keep OEM records from shadowing factory ones. A factory file that
    // cannot be read offers no names.
    auto factoryParser = std::make_unique<TuningFileParser>();
    factoryParser->setTuningFile(factoryXmlPath());
    std::set<std::string> factoryTunings;
    std::set<std::string> factoryDevices;
    if (DeviceData* factory = factoryParser->getDeviceData()) {
        for (Tuning* tuning : factory->getTunings()) factoryTunings.insert(tuning->getName());
        for (DeviceTuning* device : factory->getDeviceTunings()) {
            factoryDevices.insert(device->getDevice());
        }
    }

    if (!insideRebuild && mProvider->beginTransaction() != 0) {
        ALOGE("Cannot start merging the OEM tuning XML");
        return kOemWriteFailed;
    }
    int result = mProvider->clearOemTunings();
    ALOGD("Num of parsed OEM tuning = %zu", oem->getTunings().size());
    std::set<std::string> added;
    for (Tuning* tuning : oem->getTunings()) {
        if (factoryTunings.count(tuning->getName()) != 0) {
            ALOGE("Found OEM tuning [%s] already exists in the default tuning XML, drop it.",
                  tuning->getName().c_str());
            continue;
        }
        ALOGI("Add OEM Tuning %s", tuning->getName().c_str());
        result |= mProvider->create(tuning, Provider::kOemName);
        added.insert(tuning->getName());
    }
    result |= mProvider->clearOemDeviceTunings();
    ALOGD("Num of parsed OEM device tuning = %zu", oem->getDeviceTunings().size());
    for (DeviceTuning* device : oem->getDeviceTunings()) {
        // An OEM device may only use an OEM tuning that was accepted above.
        if (added.count(device->getTuning()) == 0) {
            ALOGE("Drop OEM Device Tuning with tuning.name [%s] (duplicate in default xml)",
                  device->getTuning().c_str());
            continue;
        }
        if (factoryDevices.count(device->getDevice()) != 0) {
            ALOGE("Found OEM device ID [%s] already exists in the default tuning XML, drop it.",
                  device->getDevice().c_str());
            continue;
        }
        ALOGI("Add OEM Device Tuning Port[%s] : Device[%s] with tuning.name [%s]",
              device->getPort().c_str(), device->getDevice().c_str(), device->getTuning().c_str());
        result |= mProvider->create(device, Provider::kOemName);
    }
    if (insideRebuild) {
        // The rebuild commits (or rolls back) the factory and OEM rows together.
        if (result != 0) return kOemWriteFailed;
    } else if (result != 0 || mProvider->commitTransaction() != 0) {
        rollBack(mProvider.get(), "Merging the OEM tuning XML");
        mProvider->reloadCachedDeviceTunings();
        return kOemWriteFailed;
    }
    ALOGD("Tell database to reload cached device tunings.");
    mProvider->reloadCachedDeviceTunings();
    return 0;
}

AxContext* AxContextManager::getAxContext() {
    android::Mutex::Autolock lock(mLock);
    return mContext.get();
}

std::string AxContextManager::getDefaultXmlFormatVersion() {
    Provider* provider = mProvider.get();
    return provider != nullptr ? provider->getDefaultXmlFormatVersion() : "";
}

void AxContextManager::release() {
    android::Mutex::Autolock lock(mLock);
    // The context borrows the store and the registry, so it goes before them.
    mContext.reset();
    mObservable.reset();
    mProvider.reset();
    mParser.reset();
}

}  // namespace korvi
