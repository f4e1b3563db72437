// The effect path against its floor: translating parameter views into a blob and sending it
// through the effect handle, compared with writing the same blob's entries straight into the
// shared store. Reported as ratios to the floor, which mean something on a noisy machine.
//
// ProfileSwitch runs the whole service path: the service context (started from the sample
// factory file in a temporary device root) switches between two profiles, the controller takes
// the new selection into its views and commits what changed; the floor writes the same two
// blobs straight into the store.
#include <benchmark/benchmark.h>

#include <sfxparamstorage/SfxParamStore.h>

#include <android/log.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "common/DeviceRoot.h"
#include "context/AxContext.h"
#include "context/AxContextManager.h"
#include "effect/ParameterTranslator.h"
#include "effect/SfxController.h"
#include "effect/SetParamCommand.h"
#include "effect/SfxEffect.h"
#include "model/AndroidDevice.h"
#include "model/DeviceParameters.h"
#include "model/IeqPreset.h"
#include "model/ProfileEndpoint.h"
#include "model/ProfileParameters.h"
#include "model/Tuning.h"

namespace korvi {
namespace {

constexpr uint32_t kDevices[] = {AUDIO_DEVICE_OUT_SPEAKER,      AUDIO_DEVICE_OUT_WIRED_HEADPHONE,
                                 AUDIO_DEVICE_OUT_BLUETOOTH_A2DP, AUDIO_DEVICE_OUT_AUX_DIGITAL,
                                 AUDIO_DEVICE_OUT_USB_DEVICE,   AUDIO_DEVICE_OUT_REMOTE_SUBMIX};

// Values of a plausible size: band lists of 20 values, switches of one.
std::vector<int> valueFor(Parameter p) {
    switch (p) {
        case OUTPUT_CHANNELS: return {2};
        case COMPLEX_EQUALIZER_ENABLE:
        case BASS_MBDRC_ENABLE:
        case REGULATOR_SIBILANCE_SUPPRESS_ENABLE:
        case VIRTUAL_BASS_ENABLE: return {1};
        default: break;
    }
    const std::string name = kParameterNames[p];
    const bool list = name.find("frequency") != std::string::npos || name.find("gain") != std::string::npos ||
                      name.find("tuning") != std::string::npos || name.find("target") != std::string::npos ||
                      name.find("amounts") != std::string::npos || name.find("threshold") != std::string::npos;
    std::vector<int> v(list ? 20 : 1);
    for (size_t i = 0; i < v.size(); ++i) v[i] = static_cast<int>(p) * 100 + static_cast<int>(i);
    return v;
}

// The service's whole state as the effect path holds it: one profile view and six device views,
// each observed by its own translator.
struct FullState {
    FullState() : profileView(&profileTranslator) {
        for (Parameter p : Profile::kValidParams) profile.set(p, valueFor(p));
        for (Parameter p : GeqPreset::kValidParams) geq.set(p, valueFor(p));
        for (Parameter p : Tuning::kValidParams) tuning.set(p, valueFor(p));
        for (Parameter p : ProfileEndpoint::kValidParams) endpoint.set(p, valueFor(p));
        for (Parameter p : {IEQ_FREQUENCY, IEQ_TARGET}) ieq.set(p, valueFor(p));
        profileView.setProfile(profile);
        profileView.setGeqPreset(geq);
        for (size_t i = 0; i < std::size(kDevices); ++i) {
            deviceViews[i] = std::make_unique<DeviceParameters>(&deviceTranslators[i]);
            deviceViews[i]->setProfileEndpoint(endpoint);
            deviceViews[i]->setIeqPreset(ieq);
            deviceViews[i]->setTuning(tuning);
        }
    }

    // Everything, as a full resend does it.
    std::unique_ptr<SetParamCommand> translateAll() {
        auto cmd = std::make_unique<SetParamCommand>(kProfileLevelDevice);
        cmd->setDeviceId(static_cast<int>(kProfileLevelDevice));
        profileTranslator.translateAll(*cmd);
        for (size_t i = 0; i < std::size(kDevices); ++i) {
            cmd->setDeviceId(static_cast<int>(kDevices[i]));
            deviceTranslators[i].translateAll(*cmd);
        }
        return cmd;
    }

    Profile profile{1, "Movie", false};
    GeqPreset geq{1};
    Tuning tuning{"speaker", HEADPHONE, false};
    ProfileEndpoint endpoint{1, HEADPHONE, 0};
    IeqPreset ieq{1, "balanced"};
    ParameterTranslator profileTranslator;
    ProfileParameters profileView;
    ParameterTranslator deviceTranslators[std::size(kDevices)];
    std::unique_ptr<DeviceParameters> deviceViews[std::size(kDevices)];
};

// The floor: the blob's entries written into the store by hand, one commit.
void writeDirect(const std::vector<int>& blob) {
    android::SfxParamStore& store = android::SfxParamStore::getInstance();
    size_t pos = 2;
    for (int e = 0; e < blob[1]; ++e) {
        const uint32_t count = static_cast<uint32_t>(blob[pos + 2]);
        store.setParam(static_cast<uint32_t>(blob[pos]), blob[pos + 1], blob.data() + pos + 3, count);
        pos += 3 + count;
    }
    store.commitChange();
}

std::vector<int> fullBlob() {
    FullState state;
    auto cmd = state.translateAll();
    std::vector<int> blob = cmd->getBlob();
    blob[1] = cmd->getEntryCount();
    return blob;
}

void BM_FullSend_Floor(benchmark::State& s) {
    const std::vector<int> blob = fullBlob();
    for (auto _ : s) writeDirect(blob);
    s.counters["entries"] = blob[1];
}

void BM_FullSend_TranslateAndSend(benchmark::State& s) {
    FullState state;
    SfxEffect effect(0, android::String16());
    for (auto _ : s) state.translateAll()->execute(effect);
}

// The common request: one device value changes, only its entry travels.
void BM_OneChange_Floor(benchmark::State& s) {
    const std::vector<int> blob{static_cast<int>(kProfileLevelDevice), 1, 0x8, 0x656c7664, 1, 1};
    for (auto _ : s) writeDirect(blob);
}

void BM_OneChange_TranslateAndSend(benchmark::State& s) {
    ParameterTranslator translator;
    DeviceParameters view(&translator);
    ProfileEndpoint on(1, HEADPHONE, 0);
    ProfileEndpoint off(1, HEADPHONE, 0);
    on.set(VOLUME_LEVELER_ENABLE, {1});
    off.set(VOLUME_LEVELER_ENABLE, {0});
    SfxEffect effect(0, android::String16());
    bool flip = false;
    for (auto _ : s) {
        view.setProfileEndpoint(flip ? on : off);
        flip = !flip;
        SetParamCommand cmd(static_cast<int>(kProfileLevelDevice));
        cmd.setDeviceId(0x8);
        translator.translatePending(cmd);
        cmd.execute(effect);
    }
}

// A started service in a device root of its own, removed at exit.
struct StartedService {
    StartedService() {
        namespace fs = std::filesystem;
        std::string pattern = (fs::temp_directory_path() / "korvi-bench-XXXXXX").string();
        dir = mkdtemp(pattern.data());
        for (const char* sub : {"vendor/etc/korvi", "data/vendor/korvi", "sys/kernel/smartpa"}) {
            fs::create_directories(fs::path(dir) / sub);
        }
        fs::copy_file(std::string(KORVI_DATA_DIR) + "/vendor/etc/korvi/wem-default.xml",
                      fs::path(dir) / "vendor/etc/korvi/wem-default.xml");
        setDeviceRoot(dir);
        AxContextManager& manager = AxContextManager::getInstance();
        manager.release();
        AxContextManager::init_smartpa_type();
        manager.init();
        context = manager.getAxContext();
        if (context == nullptr) std::abort();
    }
    ~StartedService() {
        AxContextManager::getInstance().release();
        std::filesystem::remove_all(dir);
    }
    std::string dir;
    AxContext* context = nullptr;
};

StartedService& service() {
    static StartedService started;
    return started;
}

// Hands every blob to the real store and keeps a copy of the last one.
class KeepingEffect : public SfxEffect {
public:
    KeepingEffect() : SfxEffect(0, android::String16()) {}
    void sendSharedStore(void* data, unsigned size) override {
        const int* words = static_cast<const int*>(data);
        last.assign(words, words + size / sizeof(int));
        SfxEffect::sendSharedStore(data, size);
    }
    std::vector<int> last;
};

// Dynamic (0) to Movie (1) and back: the two blobs such a round trip commits.
std::pair<std::vector<int>, std::vector<int>> switchBlobs(AxContext& context) {
    KeepingEffect effect;
    SfxController controller(0, effect);
    context.registerObserver(&controller);
    context.setSelectedProfile(1);
    std::vector<int> toMovie = effect.last;
    context.setSelectedProfile(0);
    std::vector<int> toDynamic = effect.last;
    context.unregisterObserver(&controller);
    return {toMovie, toDynamic};
}

void BM_ProfileSwitch_Floor(benchmark::State& s) {
    AxContext& context = *service().context;
    const auto [toMovie, toDynamic] = switchBlobs(context);
    for (auto _ : s) {
        writeDirect(toMovie);
        writeDirect(toDynamic);
    }
    s.counters["entries"] = toMovie[1] + toDynamic[1];
}

void BM_ProfileSwitch_TranslateAndSend(benchmark::State& s) {
    AxContext& context = *service().context;
    SfxEffect effect(0, android::String16());
    SfxController controller(0, effect);
    context.registerObserver(&controller);
    for (auto _ : s) {
        context.setSelectedProfile(1);
        context.setSelectedProfile(0);
    }
    context.unregisterObserver(&controller);
}

BENCHMARK(BM_FullSend_Floor);
BENCHMARK(BM_FullSend_TranslateAndSend);
BENCHMARK(BM_OneChange_Floor);
BENCHMARK(BM_OneChange_TranslateAndSend);
BENCHMARK(BM_ProfileSwitch_Floor);
BENCHMARK(BM_ProfileSwitch_TranslateAndSend);

// Prints the usual table, then each path's CPU time as a multiple of its floor's (CPU time is
// less disturbed than wall time by other work on a shared machine).
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) mTimes[run.benchmark_name()] = run.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }
    void printRatios() const {
        for (const char* path : {"FullSend", "OneChange", "ProfileSwitch"}) {
            const std::string floor = std::string("BM_") + path + "_Floor";
            const std::string real = std::string("BM_") + path + "_TranslateAndSend";
            if (mTimes.count(floor) && mTimes.count(real) && mTimes.at(floor) > 0) {
                std::printf("%-13s translate+send / direct store write = %.2f\n", path,
                            mTimes.at(real) / mTimes.at(floor));
            }
        }
    }

private:
    std::map<std::string, double> mTimes;
};

}  // namespace
}  // namespace korvi

// Log lines are dropped: the service logs on every profile switch.
void dropLogLine(const struct __android_logger_data*, const char*) {}

int main(int argc, char** argv) {
    __android_log_set_logger(dropLogLine);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    korvi::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
