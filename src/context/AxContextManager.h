// Brings the service's state up, once per process: finds out which smart amplifier the device
// has, picks the factory tuning file for it, rebuilds the settings database from that file when
// its content changed since the last start (told by the file's MD5 signature), merges the OEM's
// extra tuning file and creates the AxContext everything above works on.
//
// A process-wide singleton: the first getInstance() runs the start-up. A host tool or a test that
// wants to start again in the same process calls release(), then init_smartpa_type() and init().
// Log tag: "AxContextManager".
#pragma once

#include <utils/Mutex.h>
#include <utils/Singleton.h>

#include <atomic>
#include <memory>
#include <string>

namespace korvi {

class AxContext;
class AxContextChangeObservable;
class DeviceData;
class Provider;
class TuningFileParser;

class AxContextManager : public android::Singleton<AxContextManager> {
public:
    static constexpr const char* kSmartPaTypeFile = "/sys/kernel/smartpa/smartpa_type";
    static constexpr const char* kDefaultXml = "/vendor/etc/korvi/wem-default.xml";
    static constexpr const char* kFs19xxXml = "/vendor/etc/korvi/wem-fs19xx.xml";
    static constexpr const char* kOemXml = "/data/vendor/korvi/wem-extra.xml";
    static constexpr const char* kDatabaseName = "wem_sqlite3.db";
    // Amplifier types as read from the type file.
    static constexpr int kSmartPaNone = 0;
    static constexpr int kSmartPaAw882xx = 1;
    static constexpr int kSmartPaFs19xx = 2;
    // loadOemTuning when the OEM rows could not be written (and were rolled back), or when there
    // is no store to write them to because start-up failed.
    static constexpr int kOemWriteFailed = -5;
    static constexpr int kNotInitialized = -19;

    // Reads the amplifier type file: 0, -22 when it cannot be read, -119 when it cannot be opened.
    static int init_smartpa_type();
    static int get_smartpa_type();
    // The lower-case hexadecimal MD5 of the file's bytes; "" when it cannot be read.
    static std::string getSignature(const std::string& path);

    // The start-up sequence. Leaves no context when the factory file is missing or the database
    // holds no profile.
    void init();
    // The service state; nullptr when start-up failed or after release().
    AxContext* getAxContext();
    // Merges the OEM file again and, when that worked, lets the context re-choose every port's
    // tuning. 0, -2 (no OEM file), -22 (unreadable file or another format version), -5, -19.
    int loadOemTuning();
    std::string getDefaultXmlFormatVersion();
    // Drops the context, the change registry and the store; the manager itself stays.
    void release();

private:
    friend class android::Singleton<AxContextManager>;

    AxContextManager();
    ~AxContextManager();

    static std::string factoryXmlPath();
    void initDatabase(Provider* provider, const std::string& xmlPath);
    DeviceData* loadXmlIfChanged(const std::string& xmlPath, Provider* provider);
    bool populateDatabase(DeviceData* data, Provider* provider);
    // insideRebuild: the rows join the rebuild's open transaction instead of one of their own.
    int loadOemTuningLocked(bool insideRebuild = false);
    std::string getChangedSignature(const std::string& xmlPath, Provider* provider);

    static std::atomic<int> sSmartPaType;

    std::unique_ptr<Provider> mProvider;
    std::unique_ptr<AxContextChangeObservable> mObservable;
    std::unique_ptr<AxContext> mContext;
    // The parser of the last factory file read; its records feed the rebuild, so it is kept
    // until start-up ends.
    std::unique_ptr<TuningFileParser> mParser;
    android::Mutex mLock;
};

}  // namespace korvi
