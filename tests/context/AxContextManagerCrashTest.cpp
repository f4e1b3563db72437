// A device that loses power while start-up rebuilds the database from a changed factory file
// must boot into the old state or the new one, never a mix. A child process runs the start-up
// and is killed with SIGKILL just before its K-th file write (or truncate, or unlink: the
// journal's deletion is the commit), for K spread over every such event of a complete rebuild.
// The events are counted through SQLite's own hook for replacing the system calls of its Unix
// file layer, so the kill points are exact and repeatable. After each kill the database is read
// (which rolls back a hot journal, as the next start would) and compared whole with the old and
// the new state.
#include <gtest/gtest.h>

#include <android/log.h>

#include <signal.h>
#include <sqlite3.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "context/AxContext.h"
#include "context/AxContextManager.h"
#include "store/Provider.h"
#include "store/StoreTestSupport.h"
#include "support/TempDeviceRoot.h"

namespace korvi {
namespace {

using test::RawDb;
using test::Row;
using test::TempDeviceRoot;

constexpr const char* kFactory = "vendor/etc/korvi/wem-default.xml";
constexpr const char* kOem = "data/vendor/korvi/wem-extra.xml";
constexpr const char* kDb = "data/vendor/korvi/wem_sqlite3.db";
constexpr int kRuns = 60;

// ---- kill points, in the child only ----

long sEvents = 0;
long sKillAt = 0;  // 0: never
sqlite3_syscall_ptr sRealWrite, sRealPwrite, sRealPwrite64, sRealFtruncate, sRealUnlink;

void event() {
    if (++sEvents == sKillAt) raise(SIGKILL);
}
ssize_t hookWrite(int fd, const void* buf, size_t n) {
    event();
    return reinterpret_cast<ssize_t (*)(int, const void*, size_t)>(sRealWrite)(fd, buf, n);
}
ssize_t hookPwrite(int fd, const void* buf, size_t n, off_t at) {
    event();
    return reinterpret_cast<ssize_t (*)(int, const void*, size_t, off_t)>(sRealPwrite)(fd, buf, n, at);
}
ssize_t hookPwrite64(int fd, const void* buf, size_t n, off64_t at) {
    event();
    return reinterpret_cast<ssize_t (*)(int, const void*, size_t, off64_t)>(sRealPwrite64)(fd, buf, n, at);
}
int hookFtruncate(int fd, off_t size) {
    event();
    return reinterpret_cast<int (*)(int, off_t)>(sRealFtruncate)(fd, size);
}
int hookUnlink(const char* path) {
    event();
    return reinterpret_cast<int (*)(const char*)>(sRealUnlink)(path);
}

void hook(sqlite3_vfs* vfs, const char* name, sqlite3_syscall_ptr replacement, sqlite3_syscall_ptr& real) {
    real = vfs->xGetSystemCall(vfs, name);
    if (real != nullptr) vfs->xSetSystemCall(vfs, name, replacement);
}

// Runs one start-up in a child that dies before its killAt-th write event (never for 0) and
// reports how many events a complete start-up made through the pipe.
pid_t startChild(long killAt, int reportFd) {
    const pid_t pid = fork();
    if (pid != 0) return pid;
    // Sixty children's start-up lines would bury the parent's output.
    __android_log_set_logger([](const struct __android_logger_data*, const char*) {});
    sqlite3_vfs* vfs = sqlite3_vfs_find(nullptr);
    if (vfs == nullptr || vfs->iVersion < 3) _exit(3);
    hook(vfs, "write", reinterpret_cast<sqlite3_syscall_ptr>(hookWrite), sRealWrite);
    hook(vfs, "pwrite", reinterpret_cast<sqlite3_syscall_ptr>(hookPwrite), sRealPwrite);
    hook(vfs, "pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(hookPwrite64), sRealPwrite64);
    hook(vfs, "ftruncate", reinterpret_cast<sqlite3_syscall_ptr>(hookFtruncate), sRealFtruncate);
    hook(vfs, "unlink", reinterpret_cast<sqlite3_syscall_ptr>(hookUnlink), sRealUnlink);
    sKillAt = killAt;
    AxContextManager& manager = AxContextManager::getInstance();
    manager.release();
    AxContextManager::init_smartpa_type();
    manager.init();
    const bool up = manager.getAxContext() != nullptr;
    manager.release();
    if (reportFd >= 0 && write(reportFd, &sEvents, sizeof(sEvents)) != sizeof(sEvents)) _exit(4);
    _exit(up ? 0 : 5);
}

// ---- the parent ----

// The whole database as text: every table's definition and its rows, sorted. Row ids ("_id")
// are left out: a rebuild inserts records in an order that differs from process to process.
std::vector<Row> dump(const std::string& path) {
    RawDb db(path);
    std::vector<Row> all = db.rows("SELECT name, sql FROM sqlite_master ORDER BY name");
    const std::vector<Row> tables = db.rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
    for (const Row& table : tables) {
        std::vector<Row> rows = db.rows("SELECT * FROM \"" + table[0] + "\"");
        for (Row& row : rows) row.front() = table[0];
        std::sort(rows.begin(), rows.end());
        all.insert(all.end(), rows.begin(), rows.end());
    }
    return all;
}

std::string configValue(const std::vector<Row>& state, const std::string& key) {
    for (const Row& row : state) {
        if (row.size() == 3 && row[0] == "configuration" && row[1] == key) return row[2];
    }
    return "<none>";
}

std::string firstDifference(const std::vector<Row>& a, const std::vector<Row>& b) {
    auto text = [](const Row& row) {
        std::string t;
        for (const std::string& cell : row) t += cell.substr(0, 40) + "|";
        return t;
    };
    for (size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
        const std::string left = i < a.size() ? text(a[i]) : "<end>";
        const std::string right = i < b.size() ? text(b[i]) : "<end>";
        if (left != right) return "row " + std::to_string(i) + ": " + left + " vs " + right;
    }
    return "";
}

class AxContextManagerCrashTest : public ::testing::Test {
protected:
    void SetUp() override {
        Provider::kSfxStateValue = true;
        mRoot.write("sys/kernel/smartpa/smartpa_type", "none\n");
        mRoot.copyFromData(kFactory);
        mRoot.copyFromData(kOem);
    }
    void TearDown() override { AxContextManager::getInstance().release(); }

    void restoreOldDatabase(const std::string& bytes) {
        std::filesystem::remove(mRoot.path(kDb) + "-journal");
        mRoot.write(kDb, bytes);
    }

    TempDeviceRoot mRoot;
};

TEST_F(AxContextManagerCrashTest, AKilledRebuildLeavesTheOldOrTheNewStateNeverAMix) {
    // The old state: built from the factory file, then changed by the user.
    AxContextManager& manager = AxContextManager::getInstance();
    manager.release();
    AxContextManager::init_smartpa_type();
    manager.init();
    ASSERT_NE(manager.getAxContext(), nullptr);
    manager.release();
    {
        RawDb db(mRoot.path(kDb));
        db.exec("UPDATE configuration SET value = 'false' WHERE key = 'State'");
        db.exec("UPDATE configuration SET value = 'korvi_earbuds_e2' WHERE key = 'headphone'");
        db.exec("UPDATE profiles SET volume_modeler_enable = '7' WHERE custom_name = 'custom'");
    }
    const std::string oldBytes = mRoot.read(kDb);
    const std::vector<Row> oldState = dump(mRoot.path(kDb));

    // The changed factory file: a profile renamed.
    std::string xml = mRoot.read(kFactory);
    const size_t at = xml.find("name=\"Dynamic\"");
    ASSERT_NE(at, std::string::npos);
    xml.replace(at, 14, "name=\"Dynamic+\"");
    mRoot.write(kFactory, xml);

    // One complete rebuild gives the new state and the number of write events.
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    const pid_t calibration = startChild(0, fds[1]);
    close(fds[1]);
    long total = 0;
    ASSERT_EQ(read(fds[0], &total, sizeof(total)), static_cast<ssize_t>(sizeof(total)));
    close(fds[0]);
    int status = 0;
    ASSERT_EQ(waitpid(calibration, &status, 0), calibration);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    const std::vector<Row> newState = dump(mRoot.path(kDb));
    ASSERT_GT(total, 20) << "a rebuild writes the journal and the database many times";

    // The two states differ where it matters, so telling them apart proves something.
    EXPECT_EQ(configValue(oldState, "State"), "false");
    EXPECT_EQ(configValue(newState, "State"), "false") << "the rebuild keeps the on/off choice";
    EXPECT_EQ(configValue(oldState, "headphone"), "korvi_earbuds_e2");
    EXPECT_EQ(configValue(newState, "headphone"), "default_headphone");
    EXPECT_NE(configValue(oldState, "signature"), configValue(newState, "signature"));

    int sawOld = 0;
    int sawNew = 0;
    for (int run = 0; run < kRuns; ++run) {
        // Kill points from the first write event to the last, then one past it (no kill).
        const long killAt = 1 + (total * run) / (kRuns - 1);
        SCOPED_TRACE("killed before write event " + std::to_string(killAt) + " of " +
                     std::to_string(total));
        restoreOldDatabase(oldBytes);
        const pid_t child = startChild(killAt, -1);
        ASSERT_EQ(waitpid(child, &status, 0), child);
        if (killAt <= total) {
            ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
        }

        const std::vector<Row> state = dump(mRoot.path(kDb));
        {
            RawDb db(mRoot.path(kDb));
            EXPECT_EQ(db.value("PRAGMA integrity_check"), "ok");
        }
        const bool isOld = state == oldState;
        const bool isNew = state == newState;
        EXPECT_TRUE(isOld || isNew) << "signature " << configValue(state, "signature")
                                    << ", headphone " << configValue(state, "headphone");
        sawOld += isOld;
        sawNew += isNew;

        // Every so often the next start-up runs for real and ends on the new state.
        if (run % 10 == 5) {
            manager.release();
            AxContextManager::init_smartpa_type();
            manager.init();
            ASSERT_NE(manager.getAxContext(), nullptr);
            EXPECT_EQ(manager.getAxContext()->getSelectedTuningDevice(PORT_HEADPHONE), "default_headphone");
            manager.release();
            const std::vector<Row> after = dump(mRoot.path(kDb));
            EXPECT_TRUE(after == newState) << firstDifference(after, newState);
        }
    }
    EXPECT_GT(sawOld, 0);
    EXPECT_GT(sawNew, 0);
    RecordProperty("write_events", static_cast<int>(total));
    RecordProperty("old_states", sawOld);
    RecordProperty("new_states", sawNew);
}

}  // namespace
}  // namespace korvi
