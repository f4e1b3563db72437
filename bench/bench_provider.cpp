// Rebuilding the factory rows: N tunings inserted through the Provider in one transaction, next to
// the floor, the same rows inserted with one prepared statement and bound values through SQLite
// alone. Prints the provider/floor ratio per N after the table of results; a ratio that grows
// with N means the per-row cost grows with the table.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/DeviceRoot.h"
#include "common/IntText.h"
#include "model/Parameter.h"
#include "model/Tuning.h"
#include "store/DatabaseHelper.h"
#include "store/TableSchema.h"
#include "store/Provider.h"

namespace {

namespace fs = std::filesystem;
using korvi::Tuning;

constexpr const char* kFileName = "wem_sqlite3.db";

// A device root of its own, removed at exit.
struct BenchRoot {
    BenchRoot() {
        std::string pattern = (fs::temp_directory_path() / "korvi-bench-XXXXXX").string();
        dir = mkdtemp(pattern.data());
        fs::create_directories(fs::path(dir) / "data/vendor/korvi");
        korvi::setDeviceRoot(dir);
    }
    ~BenchRoot() { fs::remove_all(dir); }
    std::string dbPath() const { return dir + "/data/vendor/korvi/" + kFileName; }
    std::string dir;
};

BenchRoot& benchRoot() {
    static BenchRoot root;
    return root;
}

// Tunings shaped like factory ones: a dozen parameters, lists of up to 20 values.
std::vector<std::unique_ptr<Tuning>> makeTunings(int count) {
    const korvi::Parameter kParams[] = {
        korvi::AUDIO_OPTIMIZER_ENABLE, korvi::AUDIO_OPTIMIZER_FREQUENCY, korvi::AUDIO_OPTIMIZER_GAIN_L,
        korvi::AUDIO_OPTIMIZER_GAIN_R, korvi::BASS_ENHANCER_BOOST, korvi::ORIENTATION,
        korvi::OUTPUT_CHANNELS, korvi::OUTPUT_MIX_MATRIX, korvi::REGULATOR_ENABLE,
        korvi::REGULATOR_FREQUENCY, korvi::REGULATOR_THRESHOLD_HIGH, korvi::VIRTUAL_BASS_MODE,
    };
    std::vector<std::unique_ptr<Tuning>> tunings;
    for (int i = 0; i < count; ++i) {
        auto tuning = std::make_unique<Tuning>("tuning_" + std::to_string(i), korvi::SPEAKER, i % 2);
        int n = 1;
        for (korvi::Parameter p : kParams) {
            std::vector<int> values;
            for (int v = 0; v < n; ++v) values.push_back((i * 31 + v * 7) % 2000 - 1000);
            tuning->set(p, values);
            n = n % 20 + 3;
        }
        tunings.push_back(std::move(tuning));
    }
    return tunings;
}

// A fresh database file with the seven empty tables.
void freshDatabase() {
    fs::remove(benchRoot().dbPath());
    korvi::DatabaseHelper helper(kFileName);
    if (helper.init() != 0) std::abort();
}

void BM_ProviderInsertTunings(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        freshDatabase();
        std::vector<std::unique_ptr<Tuning>> tunings = makeTunings(count);
        korvi::Provider provider(std::make_unique<korvi::DatabaseHelper>(kFileName));
        state.ResumeTiming();
        provider.beginTransaction();
        for (auto& tuning : tunings) {
            if (provider.create(tuning.get(), korvi::Provider::kDefaultName) != 0) std::abort();
        }
        provider.commitTransaction();
        state.PauseTiming();
        if (tunings.back()->getId() != count) std::abort();  // ids stayed row count + 1
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

// The same rows, texts made beforehand, one prepared statement, bound values, one transaction.
void BM_FloorInsertTunings(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const korvi::TableSchema& schema = *korvi::TableSchema::forType(korvi::TABLE_TUNINGS);
    for (auto _ : state) {
        state.PauseTiming();
        freshDatabase();
        std::vector<std::unique_ptr<Tuning>> tunings = makeTunings(count);
        std::vector<std::vector<std::string>> rows;
        for (auto& tuning : tunings) {
            std::vector<std::string> row = {korvi::Provider::kDefaultName, tuning->getName(), "speaker",
                                            tuning->isMono() ? "1" : "0", "1"};
            for (korvi::Parameter p : schema.parameterColumns) {
                auto it = tuning->mValues.find(p);
                row.push_back(it == tuning->mValues.end() ? "" : korvi::intVector2String(it->second));
            }
            rows.push_back(std::move(row));
        }
        sqlite3* db = nullptr;
        sqlite3_open_v2(benchRoot().dbPath().c_str(), &db,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX, nullptr);
        std::string sql = "INSERT INTO tunings VALUES(?";
        for (size_t i = 0; i < rows[0].size(); ++i) sql += ",?";
        sql += ")";
        state.ResumeTiming();

        sqlite3_exec(db, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
        sqlite3_stmt* stmt = nullptr;
        sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr);
        for (size_t r = 0; r < rows.size(); ++r) {
            sqlite3_bind_int64(stmt, 1, static_cast<sqlite3_int64>(r + 1));
            for (size_t c = 0; c < rows[r].size(); ++c) {
                sqlite3_bind_text(stmt, static_cast<int>(c) + 2, rows[r][c].data(),
                                  static_cast<int>(rows[r][c].size()), SQLITE_STATIC);
            }
            if (sqlite3_step(stmt) != SQLITE_DONE) std::abort();
            sqlite3_reset(stmt);
        }
        sqlite3_finalize(stmt);
        sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);

        state.PauseTiming();
        sqlite3_close_v2(db);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

BENCHMARK(BM_FloorInsertTunings)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ProviderInsertTunings)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// Keeps the console table and remembers each run's time per iteration for the ratios.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.iterations > 0) mSeconds[run.benchmark_name()] = run.real_accumulated_time / run.iterations;
        }
    }
    void printRatios() const {
        for (const char* n : {"1000", "10000"}) {
            auto floor = mSeconds.find(std::string("BM_FloorInsertTunings/") + n);
            auto provider = mSeconds.find(std::string("BM_ProviderInsertTunings/") + n);
            if (floor == mSeconds.end() || provider == mSeconds.end()) continue;
            std::printf("provider/floor ratio, %s tunings in one transaction: %.2f\n", n,
                        provider->second / floor->second);
        }
    }

private:
    std::map<std::string, double> mSeconds;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchRoot();
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
