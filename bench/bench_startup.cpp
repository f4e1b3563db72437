// Start-up against its floor, in one run, for the sample factory file and for one with ten times
// its tunings and devices:
// - cold boot (the factory file changed: parse, rebuild, context load) against libxml2 parsing
//   the same file, its MD5 and the same rows inserted with prepared statements in one
//   transaction;
// - warm boot (file unchanged: signature, provider init, context load) against the file's MD5
//   and reading the same rows with prepared statements.
// Prints the boot/floor ratios and the cold-boot growth from 1x to 10x after the table.
#include <android/log.h>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <libxml/parser.h>
#include <openssl/evp.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "common/DeviceRoot.h"
#include "context/AxContext.h"
#include "context/AxContextManager.h"

namespace {

namespace fs = std::filesystem;
using korvi::AxContextManager;

constexpr const char* kFactory = "/vendor/etc/korvi/wem-default.xml";
constexpr const char* kDb = "/data/vendor/korvi/wem_sqlite3.db";

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << text;
}

// The sample factory file with every tuning repeated `scale` times, each copy renamed together
// with its devices, so the file has scale times the tunings and devices.
std::string scaledFactoryFile(int scale) {
    const std::string sample = readFile(std::string(KORVI_DATA_DIR) + kFactory);
    if (scale == 1) return sample;
    const size_t first = sample.find("    <tuning ");
    const size_t end = sample.rfind("</korvi_tuning>");
    const std::string head = sample.substr(0, first);
    const std::string tunings = sample.substr(first, end - first);
    std::string body = tunings;
    for (int copy = 1; copy < scale; ++copy) {
        const std::string suffix = "_x" + std::to_string(copy);
        std::string renamed = std::regex_replace(tunings, std::regex("<tuning name=\"([^\"]+)\""),
                                                 "<tuning name=\"$1" + suffix + "\"");
        renamed = std::regex_replace(renamed, std::regex("<device_id id=\"([^\"]+)\""),
                                     "<device_id id=\"$1" + suffix + "\"");
        body += renamed;
    }
    return head + body + sample.substr(end);
}

// A device root of its own, removed at exit; no OEM file, so start-up is the factory work only.
struct BenchRoot {
    BenchRoot() {
        std::string pattern = (fs::temp_directory_path() / "korvi-bench-XXXXXX").string();
        dir = mkdtemp(pattern.data());
        for (const char* sub : {"vendor/etc/korvi", "data/vendor/korvi", "sys/kernel/smartpa"}) {
            fs::create_directories(fs::path(dir) / sub);
        }
        korvi::setDeviceRoot(dir);
        writeFile(korvi::devicePath("/sys/kernel/smartpa/smartpa_type"), "none\n");
    }
    ~BenchRoot() { fs::remove_all(dir); }
    void useScale(int scale) {
        if (scale == current) return;
        writeFile(korvi::devicePath(kFactory), scaledFactoryFile(scale));
        current = scale;
    }
    std::string dir;
    int current = 0;
};

BenchRoot& benchRoot() {
    static BenchRoot root;
    return root;
}

// Log lines are formatted as on a device and then dropped instead of written to stderr.
void dropLogLine(const struct __android_logger_data*, const char*) {}

void startUp() {
    AxContextManager& manager = AxContextManager::getInstance();
    manager.release();
    AxContextManager::init_smartpa_type();
    manager.init();
    if (manager.getAxContext() == nullptr) std::abort();
}

sqlite3* openDb() {
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(korvi::devicePath(kDb).c_str(), &db,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX, nullptr) != SQLITE_OK) {
        std::abort();
    }
    return db;
}

void exec(sqlite3* db, const std::string& sql) {
    if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
}

// Makes the next start-up see a changed factory file.
void forgetSignature() {
    sqlite3* db = openDb();
    exec(db, "UPDATE configuration SET value = 'stale' WHERE key = 'signature'");
    sqlite3_close_v2(db);
}

// ---- the floors' pieces ----

std::string md5Of(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY);
    struct stat st;
    if (fd < 0 || fstat(fd, &st) != 0) std::abort();
    void* mapped = mmap(nullptr, static_cast<size_t>(st.st_size), PROT_READ, MAP_PRIVATE, fd, 0);
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_Digest(mapped, static_cast<size_t>(st.st_size), digest, &length, EVP_md5(), nullptr);
    munmap(mapped, static_cast<size_t>(st.st_size));
    close(fd);
    return std::string(reinterpret_cast<char*>(digest), length);
}

void parseXml(const std::string& path) {
    xmlDoc* doc = xmlReadFile(path.c_str(), nullptr, 0);
    if (doc == nullptr || xmlDocGetRootElement(doc) == nullptr) std::abort();
    xmlFreeDoc(doc);
}

struct Table {
    std::string name;
    std::string createSql;
    int columns = 0;
    std::vector<std::vector<std::string>> rows;
};

// Every table and row that a rebuild leaves in the database.
std::vector<Table> rebuiltRows() {
    sqlite3* db = openDb();
    std::vector<Table> tables;
    sqlite3_stmt* list = nullptr;
    sqlite3_prepare_v2(db, "SELECT name, sql FROM sqlite_master WHERE type = 'table'", -1, &list, nullptr);
    while (sqlite3_step(list) == SQLITE_ROW) {
        Table table;
        table.name = reinterpret_cast<const char*>(sqlite3_column_text(list, 0));
        table.createSql = reinterpret_cast<const char*>(sqlite3_column_text(list, 1));
        sqlite3_stmt* rows = nullptr;
        sqlite3_prepare_v2(db, ("SELECT * FROM " + table.name).c_str(), -1, &rows, nullptr);
        table.columns = sqlite3_column_count(rows);
        while (sqlite3_step(rows) == SQLITE_ROW) {
            std::vector<std::string> row;
            for (int c = 0; c < table.columns; ++c) {
                const unsigned char* text = sqlite3_column_text(rows, c);
                row.push_back(text ? reinterpret_cast<const char*>(text) : "");
            }
            table.rows.push_back(std::move(row));
        }
        sqlite3_finalize(rows);
        tables.push_back(std::move(table));
    }
    sqlite3_finalize(list);
    sqlite3_close_v2(db);
    return tables;
}

void BM_ColdBoot(benchmark::State& state) {
    benchRoot().useScale(static_cast<int>(state.range(0)));
    startUp();
    for (auto _ : state) {
        state.PauseTiming();
        AxContextManager::getInstance().release();
        forgetSignature();
        state.ResumeTiming();
        startUp();
    }
}

void BM_ColdFloor(benchmark::State& state) {
    benchRoot().useScale(static_cast<int>(state.range(0)));
    startUp();
    AxContextManager::getInstance().release();
    const std::vector<Table> tables = rebuiltRows();
    const std::string xml = korvi::devicePath(kFactory);
    for (auto _ : state) {
        state.PauseTiming();
        fs::remove(korvi::devicePath(kDb));
        sqlite3* db = openDb();
        for (const Table& table : tables) exec(db, table.createSql);
        state.ResumeTiming();

        parseXml(xml);
        benchmark::DoNotOptimize(md5Of(xml));
        exec(db, "BEGIN EXCLUSIVE");
        for (const Table& table : tables) {
            std::string sql = "INSERT INTO " + table.name + " VALUES(?";
            for (int c = 1; c < table.columns; ++c) sql += ",?";
            sqlite3_stmt* insert = nullptr;
            sqlite3_prepare_v2(db, (sql + ")").c_str(), -1, &insert, nullptr);
            for (const auto& row : table.rows) {
                for (int c = 0; c < table.columns; ++c) {
                    sqlite3_bind_text(insert, c + 1, row[c].data(), static_cast<int>(row[c].size()),
                                      SQLITE_STATIC);
                }
                if (sqlite3_step(insert) != SQLITE_DONE) std::abort();
                sqlite3_reset(insert);
            }
            sqlite3_finalize(insert);
        }
        exec(db, "COMMIT");

        state.PauseTiming();
        sqlite3_close_v2(db);
        state.ResumeTiming();
    }
    // Leave a database the start-up benchmarks can use.
    fs::remove(korvi::devicePath(kDb));
}

void BM_WarmBoot(benchmark::State& state) {
    benchRoot().useScale(static_cast<int>(state.range(0)));
    startUp();
    for (auto _ : state) {
        state.PauseTiming();
        AxContextManager::getInstance().release();
        state.ResumeTiming();
        startUp();
    }
}

// Reads every column of the rows a warm start-up loads: the configuration, the IEQ presets, the
// factory and working profile rows (profile, endpoints, GEQ preset), every port's device tunings
// and the tunings of the selected devices.
void readRows(sqlite3_stmt* stmt, size_t& cells) {
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
            if (sqlite3_column_text(stmt, c) != nullptr) ++cells;
        }
    }
    sqlite3_reset(stmt);
}

void BM_WarmFloor(benchmark::State& state) {
    benchRoot().useScale(static_cast<int>(state.range(0)));
    startUp();
    AxContextManager::getInstance().release();
    const std::string xml = korvi::devicePath(kFactory);
    const char* kPorts[] = {"internal_speaker", "hdmi", "miracast", "headphone", "bluetooth", "usb"};
    sqlite3* db = openDb();
    for (auto _ : state) {
        benchmark::DoNotOptimize(md5Of(xml));
        size_t cells = 0;
        auto all = [&](const char* sql) {
            sqlite3_stmt* stmt = nullptr;
            sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr);
            readRows(stmt, cells);
            sqlite3_finalize(stmt);
        };
        all("SELECT * FROM configuration");
        all("SELECT * FROM ieq_presets");
        all("SELECT * FROM profiles");
        all("SELECT * FROM profile_endpoints");
        all("SELECT * FROM geq_presets");
        sqlite3_stmt* devices = nullptr;
        sqlite3_prepare_v2(db, "SELECT * FROM device_tunings WHERE port = ?", -1, &devices, nullptr);
        sqlite3_stmt* tuning = nullptr;
        sqlite3_prepare_v2(db,
                           "SELECT * FROM tunings WHERE name = (SELECT tuning_id FROM device_tunings "
                           "WHERE device = (SELECT value FROM configuration WHERE key = ?))",
                           -1, &tuning, nullptr);
        for (const char* port : kPorts) {
            sqlite3_bind_text(devices, 1, port, -1, SQLITE_STATIC);
            readRows(devices, cells);
            sqlite3_bind_text(tuning, 1, port, -1, SQLITE_STATIC);
            readRows(tuning, cells);
        }
        sqlite3_finalize(devices);
        sqlite3_finalize(tuning);
        if (cells == 0) std::abort();
    }
    sqlite3_close_v2(db);
}

BENCHMARK(BM_ColdFloor)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ColdBoot)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WarmFloor)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WarmBoot)->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);

// Keeps the console table and remembers each run's time per iteration for the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.iterations == 0) continue;
            mSeconds[run.benchmark_name()] = run.real_accumulated_time / run.iterations;
            mCpuSeconds[run.benchmark_name()] = run.cpu_accumulated_time / run.iterations;
        }
    }
    double time(const std::string& name) const {
        auto it = mTimes->find(name);
        return it == mTimes->end() ? 0 : it->second;
    }
    // Wall-clock ratios first (they include waiting for the disk), then the same on CPU time,
    // which is steadier on a loaded machine.
    void printRatios() {
        mTimes = &mSeconds;
        std::printf("-- wall-clock time --\n");
        printRatiosOfTimes();
        mTimes = &mCpuSeconds;
        std::printf("-- CPU time --\n");
        printRatiosOfTimes();
    }

private:
    void printRatiosOfTimes() const {
        for (const char* scale : {"1", "10"}) {
            const std::string s = scale;
            if (time("BM_ColdFloor/" + s) > 0 && time("BM_ColdBoot/" + s) > 0) {
                std::printf("cold boot/floor ratio, %sx file: %.2f (goal <= 1.5)\n", scale,
                            time("BM_ColdBoot/" + s) / time("BM_ColdFloor/" + s));
            }
            if (time("BM_WarmFloor/" + s) > 0 && time("BM_WarmBoot/" + s) > 0) {
                std::printf("warm boot/floor ratio, %sx file: %.2f (goal <= 1.5)\n", scale,
                            time("BM_WarmBoot/" + s) / time("BM_WarmFloor/" + s));
            }
        }
        if (time("BM_ColdBoot/1") > 0 && time("BM_ColdBoot/10") > 0) {
            std::printf("cold boot growth, 10x file / 1x file: %.2f (goal <= 11)\n",
                        time("BM_ColdBoot/10") / time("BM_ColdBoot/1"));
        }
    }

    std::map<std::string, double> mSeconds;
    std::map<std::string, double> mCpuSeconds;
    const std::map<std::string, double>* mTimes = &mSeconds;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchRoot();
    __android_log_set_logger(dropLogLine);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    AxContextManager::getInstance().release();
    benchmark::Shutdown();
    return 0;
}
