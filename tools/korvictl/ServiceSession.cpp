#include "ServiceSession.h"

#include <android/log.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <mutex>

#include <sfxparamstorage/SfxParamStore.h>
#include <vendor/korvi/hardware/tcs/2.0/ITcsCallbacks.h>

#include "common/DeviceRoot.h"
#include "context/AxContextManager.h"
#include "service/AxManager.h"
#include "service/KorviManagerService.h"
#include "store/DatabaseHelper.h"

namespace korvi::ctl {

using vendor::korvi::hardware::tcs::V2_0::ITcsCallbacks;
namespace fs = std::filesystem;

namespace {

constexpr uint32_t kClientUid = 1000;
constexpr int kClientType = 0;  // an ordinary client, like a settings application
constexpr const char* kStartupTag = "AxContextManager";

// Records the start-up's own log lines (to report what it did) and lets every line through to
// stderr when asked to. liblog calls the logger under its own lock: nothing here blocks.
class LogTap {
public:
    static void install(bool echo) {
        sEcho = echo;
        __android_log_set_minimum_priority(ANDROID_LOG_DEBUG);
        __android_log_set_logger(&LogTap::logger);
    }
    static std::vector<std::string> startupLines() {
        std::lock_guard<std::mutex> lock(sLock);
        return sStartupLines;
    }

private:
    static void logger(const struct __android_logger_data* data, const char* message) {
        const std::string tag = data->tag != nullptr ? data->tag : "";
        if (tag == kStartupTag && message != nullptr) {
            std::lock_guard<std::mutex> lock(sLock);
            sStartupLines.push_back(message);
        }
        if (sEcho || data->priority >= ANDROID_LOG_FATAL) __android_log_stderr_logger(data, message);
    }

    static inline std::atomic<bool> sEcho{false};
    static inline std::mutex sLock;
    static inline std::vector<std::string> sStartupLines;
};

bool startsWith(const std::string& text, const char* prefix) {
    return text.rfind(prefix, 0) == 0;
}

// The signature the database was built from, or "" when there is no database (or no row).
std::string storedSignature(const std::string& dbPath) {
    struct stat st;
    if (stat(dbPath.c_str(), &st) != 0) return "";
    sqlite3* db = nullptr;
    std::string signature;
    if (sqlite3_open_v2(dbPath.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, "SELECT value FROM configuration WHERE key = 'signature'", -1,
                               &stmt, nullptr) == SQLITE_OK &&
            sqlite3_step(stmt) == SQLITE_ROW && sqlite3_column_text(stmt, 0) != nullptr) {
            signature = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
        }
        sqlite3_finalize(stmt);
    }
    sqlite3_close_v2(db);
    return signature;
}

// The texts between square brackets, in order.
std::vector<std::string> bracketed(const std::string& line) {
    std::vector<std::string> texts;
    for (size_t open = line.find('['); open != std::string::npos; open = line.find('[', open + 1)) {
        const size_t close = line.find(']', open);
        if (close == std::string::npos) break;
        texts.push_back(line.substr(open + 1, close - open - 1));
    }
    return texts;
}

// Sorts the start-up's OEM merge lines into what was added and what was dropped and why.
void readOemMerge(const std::vector<std::string>& lines, StartupReport* report) {
    bool merged = false;
    for (const std::string& line : lines) {
        if (startsWith(line, "Add OEM Tuning ")) {
            report->oemAdded.push_back("tuning " + line.substr(15));
        } else if (startsWith(line, "Add OEM Device Tuning ")) {
            const std::vector<std::string> b = bracketed(line);  // port, device, tuning
            report->oemAdded.push_back(b.size() == 3 ? "device " + b[1] + " on port " + b[0] +
                                                               ", tuning " + b[2]
                                                     : line);
        } else if (startsWith(line, "Found OEM") || startsWith(line, "Drop OEM") ||
                   startsWith(line, "OEM tuning format V=")) {
            report->oemDropped.push_back(line);
        } else if (startsWith(line, "OEM Tuning XML")) {
            report->oemNote = line;
        } else if (startsWith(line, "Num of parsed OEM tuning")) {
            merged = true;
        }
    }
    if (report->oemNote.empty() && !merged && report->oemDropped.empty()) {
        report->oemNote = "not merged: the OEM file is merged when the factory file changed "
                          "(or on reload)";
    }
}

}  // namespace

// The client korvictl registers: keeps every notification it receives.
class SessionClient : public ITcsCallbacks {
public:
    android::hardware::Return<void> onSfxParamUpdate(
            const android::hardware::hidl_vec<uint8_t>& data) override {
        std::lock_guard<std::mutex> lock(mLock);
        mReceived.emplace_back(data.data(), data.data() + data.size());
        mChanged.notify_all();
        return android::hardware::Status::ok();
    }

    // Waits until count notifications have arrived in all; false on timeout.
    bool waitFor(size_t count) {
        std::unique_lock<std::mutex> lock(mLock);
        return mChanged.wait_for(lock, std::chrono::seconds(10),
                                 [&] { return mReceived.size() >= count; });
    }
    std::vector<std::vector<uint8_t>> received() {
        std::lock_guard<std::mutex> lock(mLock);
        return mReceived;
    }

private:
    std::mutex mLock;
    std::condition_variable mChanged;
    std::vector<std::vector<uint8_t>> mReceived;
};

std::string bundledDeviceRoot() {
    // An installed tool has the samples under share/ beside its bin/; a built one, in the
    // source tree it was built from.
    std::error_code ec;
    const fs::path installed =
            fs::read_symlink("/proc/self/exe", ec).parent_path() / "../share/krvaxservice/data";
    if (!ec && fs::is_directory(installed / "vendor", ec)) {
        return installed.lexically_normal().string();
    }
    return KORVICTL_DATA_DIR;
}

std::unique_ptr<ServiceSession> ServiceSession::start(const std::string& root, bool echoLog,
                                                      std::string* error) {
    std::unique_ptr<ServiceSession> session(new ServiceSession());
    std::error_code ec;
    if (root.empty()) {
        char scratch[] = "/tmp/korvictl-root-XXXXXX";
        if (mkdtemp(scratch) == nullptr) {
            *error = "cannot create a scratch directory in /tmp";
            return nullptr;
        }
        session->mScratch = scratch;
        session->mRoot = scratch;
        fs::copy(bundledDeviceRoot(), scratch, fs::copy_options::recursive, ec);
        if (ec) {
            *error = "cannot copy the sample device root " + bundledDeviceRoot() + ": " +
                     ec.message();
            return nullptr;
        }
    } else {
        if (!fs::is_directory(root, ec)) {
            *error = "device root " + root + " is not a directory";
            return nullptr;
        }
        session->mRoot = fs::absolute(root, ec).lexically_normal().string();
    }
    if (!session->bringUp(echoLog, error)) return nullptr;
    return session;
}

bool ServiceSession::bringUp(bool echoLog, std::string* error) {
    LogTap::install(echoLog);
    setDeviceRoot(mRoot);
    fs::create_directories(devicePath(DatabaseHelper::kDatabaseDir));
    mStartup.oldSignature = storedSignature(devicePath(std::string(DatabaseHelper::kDatabaseDir) +
                                                       "wem_sqlite3.db"));

    mService = new android::KorviManagerService();
    mClient = new SessionClient();
    mService->registerClient(mClient, kClientType, kClientUid);
    if (mService->getIntParam(0x44544656 /* "DTFV" */) == -19) {
        *error = "the service did not start over " + mRoot +
                 " (is there a factory tuning file in vendor/etc/korvi/? try --log)";
        return false;
    }
    mStartup.amplifierType = AxContextManager::get_smartpa_type();
    mStartup.factoryFile = mStartup.amplifierType == 2 ? "/vendor/etc/korvi/wem-fs19xx.xml"
                                                       : "/vendor/etc/korvi/wem-default.xml";
    mStartup.newSignature = AxContextManager::getSignature(devicePath(mStartup.factoryFile));
    mStartup.database = mStartup.oldSignature.empty()                      ? "built"
                        : mStartup.oldSignature == mStartup.newSignature ? "reused"
                                                                           : "rebuilt";
    mStartup.formatVersion = AxManager::getDefaultXmlFormatVersion();
    readOemMerge(LogTap::startupLines(), &mStartup);
    // The refresh of the registration itself is part of start-up.
    if (!mClient->waitFor(1)) {
        *error = "the service's handler did not answer the registration";
        return false;
    }
    mSeen = 1;
    return true;
}

ServiceSession::~ServiceSession() {
    if (mService != nullptr) {
        mService->unregisterClient(mClient, kClientType, kClientUid);
        mService.clear();
        // Only now that start-up ran: asking for the manager earlier would start it up.
        AxContextManager::getInstance().release();
    }
    if (!mScratch.empty()) {
        std::error_code ec;
        fs::remove_all(mScratch, ec);
    }
}

bool ServiceSession::sync(std::vector<std::vector<uint8_t>>* notifications) {
    const size_t before = mClient->received().size();
    // Registering again posts a refresh behind every write queued so far: once it arrives, the
    // handler has handled them all.
    mService->registerClient(mClient, kClientType, kClientUid);
    if (!mClient->waitFor(before + 1)) return false;
    std::vector<std::vector<uint8_t>> all = mClient->received();
    notifications->assign(all.begin() + static_cast<long>(mSeen), all.end() - 1);
    mSeen = all.size();
    return true;
}

EffectState ServiceSession::effectState() const {
    android::KeyedVector<uint32_t, android::SfxParamCache*> stored;
    int version = 0;
    android::SfxParamStore::getInstance().getStoredParams(&stored, false, &version);
    EffectState state;
    for (size_t i = 0; i < stored.size(); ++i) {
        for (const auto& [id, values] : stored.valueAt(i)->params()) {
            state[stored.keyAt(i)][id] = values;
        }
    }
    android::SfxParamStore::releaseStoredParams(&stored);
    return state;
}

}  // namespace korvi::ctl
