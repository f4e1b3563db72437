// A device that loses power while start-up rebuilds the database from a changed factory file
// must boot into the old state or the new one, never a mix. A child process runs the start-up
// and dies by SIGKILL just before its K-th file write, truncate or unlink (the journal's unlink is
// the commit), for K spread over every such event of a complete rebuild, counted through SQLite's
// hook for replacing the system calls of its Unix file layer. After each kill the database is
// read (which rolls back a hot journal, as the next start does) and compared whole with the old
// and the new state.
#include <gtest/gtest.h>

#include <android/log.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "context/AxContextManager.h"
#include "context/ContextTestSupport.h"

namespace korvi {
namespace {

using test::RawDb;
using test::Row;

constexpr const char* kDb = "data/vendor/korvi/wem_sqlite3.db";
constexpr int kRuns = 60;

// In the child: count write events, die at the chosen one.
long sEvents = 0;
long sKillAt = 0;  // 0: never
sqlite3_syscall_ptr sReal[5];

template <int N, typename R, typename... A>
R hooked(A... args) {
    if (++sEvents == sKillAt) raise(SIGKILL);
    return reinterpret_cast<R (*)(A...)>(sReal[N])(args...);
}

const std::pair<const char*, sqlite3_syscall_ptr> kHooks[] = {
    {"write", reinterpret_cast<sqlite3_syscall_ptr>(hooked<0, ssize_t, int, const void*, size_t>)},
    {"pwrite",
     reinterpret_cast<sqlite3_syscall_ptr>(hooked<1, ssize_t, int, const void*, size_t, off_t>)},
    {"pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(
                     hooked<2, ssize_t, int, const void*, size_t, off64_t>)},
    {"ftruncate", reinterpret_cast<sqlite3_syscall_ptr>(hooked<3, int, int, off_t>)},
    {"unlink", reinterpret_cast<sqlite3_syscall_ptr>(hooked<4, int, const char*>)},
};

bool startUp() {
    AxContextManager& manager = AxContextManager::getInstance();
    manager.release();
    AxContextManager::init_smartpa_type();
    manager.init();
    const bool up = manager.getAxContext() != nullptr;
    manager.release();
    return up;
}

// A child runs one start-up, dying before its killAt-th write event (never for 0), and writes
// the number of events of the whole start-up to reportFd.
pid_t startChild(long killAt, int reportFd) {
    const pid_t pid = fork();
    if (pid != 0) return pid;
    __android_log_set_logger([](const struct __android_logger_data*, const char*) {});
    sqlite3_vfs* vfs = sqlite3_vfs_find(nullptr);
    if (vfs == nullptr || vfs->iVersion < 3) _exit(3);
    for (size_t i = 0; i < std::size(kHooks); ++i) {
        sReal[i] = vfs->xGetSystemCall(vfs, kHooks[i].first);
        if (sReal[i] != nullptr) vfs->xSetSystemCall(vfs, kHooks[i].first, kHooks[i].second);
    }
    sKillAt = killAt;
    const bool up = startUp();
    if (reportFd >= 0 && write(reportFd, &sEvents, sizeof(sEvents)) != sizeof(sEvents)) _exit(4);
    _exit(up ? 0 : 5);
}

// Every table's definition and rows, sorted; without the row ids, whose order follows the
// records' order in memory and so differs between processes.
std::vector<Row> dump(const std::string& path) {
    RawDb db(path);
    EXPECT_EQ(db.value("PRAGMA integrity_check"), "ok");
    std::vector<Row> all = db.rows("SELECT name, sql FROM sqlite_master ORDER BY name");
    for (const Row& table : db.rows("SELECT name FROM sqlite_master WHERE type='table'")) {
        std::vector<Row> rows = db.rows("SELECT * FROM " + table[0]);
        for (Row& row : rows) row.front() = table[0];
        std::sort(rows.begin(), rows.end());
        all.insert(all.end(), rows.begin(), rows.end());
    }
    return all;
}

TEST(AxContextManagerCrashTest, AKilledRebuildLeavesTheOldOrTheNewStateNeverAMix) {
    test::TempDeviceRoot root;
    Provider::kSfxStateValue = true;
    root.write("sys/kernel/smartpa/smartpa_type", "none\n");
    root.copyFromData("data/vendor/korvi/wem-extra.xml");
    root.copyFromData("vendor/etc/korvi/wem-default.xml");
    const std::string dbPath = root.path(kDb);

    // The old state: built from the factory file, then changed by the user.
    ASSERT_TRUE(startUp());
    RawDb(dbPath).exec(
        "UPDATE configuration SET value='false' WHERE key='State';"
        "UPDATE configuration SET value='korvi_earbuds_e2' WHERE key='headphone';"
        "UPDATE profiles SET volume_modeler_enable='7' WHERE custom_name='custom'");
    const std::string oldBytes = root.read(kDb);
    const std::vector<Row> oldState = dump(dbPath);
    // The changed factory file: a profile renamed.
    std::string text = root.read("vendor/etc/korvi/wem-default.xml");
    text.replace(text.find("name=\"Dynamic\""), 14, "name=\"Dynamic+\"");
    root.write("vendor/etc/korvi/wem-default.xml", text);

    // One complete start-up gives the new state and the number of write events.
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
    const std::vector<Row> newState = dump(dbPath);
    ASSERT_GT(total, 20);
    ASSERT_NE(oldState, newState);

    int sawOld = 0, sawNew = 0;
    for (int run = 0; run < kRuns; ++run) {
        // From the first write event to one past the last (a start-up that completes).
        const long killAt = 1 + (total * run) / (kRuns - 1);
        SCOPED_TRACE("killed before write event " + std::to_string(killAt) + " of " +
                     std::to_string(total));
        std::filesystem::remove(dbPath + "-journal");
        root.write(kDb, oldBytes);
        const pid_t child = startChild(killAt, -1);
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(killAt <= total, WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) << status;
        const std::vector<Row> state = dump(dbPath);
        sawOld += state == oldState;
        sawNew += state == newState;
        EXPECT_TRUE(state == oldState || state == newState);
        // Now and then the next start-up runs here and ends on the new state.
        if (run % 10 == 5) {
            ASSERT_TRUE(startUp());
            EXPECT_TRUE(dump(dbPath) == newState);
        }
    }
    EXPECT_GT(sawOld, 0);
    EXPECT_GT(sawNew, 0);
}

}  // namespace
}  // namespace korvi
