// A reader racing a writer: one thread commits whole multi-entry commands whose values all equal
// the command's sequence number, another keeps reading the store. Every copy a reader gets must
// hold exactly one command, complete. Run under ThreadSanitizer by the CI's tsan target.
#include <gtest/gtest.h>

#include <sfxparamstorage/EffectParamParser.h>
#include <sfxparamstorage/SfxParamStore.h>

#include <atomic>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "StoreSnapshot.h"

namespace korvi {
namespace {

using android::EffectParamParser;
using android::SfxParamStore;
using test::readStore;
using test::StoreContents;

const std::vector<uint32_t> kDevices = {0x2, 0x8, 0x40000000};
const std::vector<int32_t> kIds = {0x656c7664, 0x006c6f76, 0x73626569, 0x666e6f64};
constexpr size_t kEntriesPerCommand = 12;  // kDevices x kIds

// A blob of every device and id, entry i carrying i % 5 + 1 copies of seq.
std::vector<int32_t> commandBlob(int32_t seq) {
    std::vector<int32_t> blob = {0x40000000, static_cast<int32_t>(kEntriesPerCommand)};
    int i = 0;
    for (uint32_t device : kDevices) {
        for (int32_t id : kIds) {
            const int32_t n = i++ % 5 + 1;
            blob.insert(blob.end(), {static_cast<int32_t>(device), id, n});
            blob.insert(blob.end(), n, seq);
        }
    }
    return blob;
}

// Hands one blob to the store the way the service does: validate, stage every entry, commit.
void sendToStore(const std::vector<int32_t>& blob) {
    EffectParamParser parser(blob.data(), static_cast<uint32_t>(blob.size() * 4));
    ASSERT_TRUE(parser.validate());
    parser.begin();
    int32_t device;
    int32_t id;
    uint32_t count;
    const int32_t* values;
    SfxParamStore& store = SfxParamStore::getInstance();
    while (parser.next(&device, &id, &count, &values)) {
        store.setParam(static_cast<uint32_t>(device), id, values, count);
    }
    store.commitChange();
}

// The sequence number the copy holds, or an explanation of why it is not one whole command.
bool wholeCommand(const StoreContents& contents, int32_t* seq, std::string* why) {
    size_t entries = 0;
    std::set<int32_t> seen;
    for (const auto& [device, params] : contents) {
        for (const auto& [id, values] : params) {
            ++entries;
            if (values.empty()) {
                *why = "an entry without values";
                return false;
            }
            seen.insert(values.begin(), values.end());
        }
    }
    if (entries != kEntriesPerCommand || seen.size() != 1) {
        *why = std::to_string(entries) + " entries with " + std::to_string(seen.size()) + " distinct values";
        return false;
    }
    *seq = *seen.begin();
    return true;
}

TEST(StoreConcurrency, ReadersSeeWholeCommandsOnly) {
    SfxParamStore::getInstance().clear();
    constexpr int kMinCommits = 20000;
    constexpr int kMinReads = 2000;
    constexpr int kMaxCommits = 2000000;  // the writer never outruns a stalled reader forever
    std::atomic<int> reads{0};
    std::atomic<bool> writerDone{false};
    std::atomic<bool> readerGaveUp{false};

    std::thread writer([&] {
        for (int seq = 1; seq <= kMaxCommits; ++seq) {
            sendToStore(commandBlob(seq));
            if ((seq >= kMinCommits && reads.load() >= kMinReads) || readerGaveUp.load()) {
                break;
            }
        }
        writerDone = true;
    });

    int lastSeq = 0;
    int lastVersion = 0;
    int changedVersion = 0;
    std::set<int> distinct;
    std::string failure;
    while (failure.empty()) {
        const bool finished = writerDone.load();
        int version = 0;
        const StoreContents all = readStore(false, &version);
        if (version == 0) {
            if (!all.empty()) {
                failure = "values before the first commit";
            }
        } else {
            int32_t seq = 0;
            std::string why;
            if (!wholeCommand(all, &seq, &why)) {
                failure = "copy at version " + std::to_string(version) + ": " + why;
            } else if (seq != version) {
                // Every command is one commit, so the copy's values and its version agree.
                failure = "values of command " + std::to_string(seq) + " at version " + std::to_string(version);
            } else if (seq < lastSeq || version < lastVersion) {
                failure = "went back from " + std::to_string(lastSeq) + " to " + std::to_string(seq);
            }
            lastSeq = seq;
            lastVersion = version;
            distinct.insert(seq);
        }
        // A reader asking only for changes gets either nothing or one whole newer command.
        const int before = changedVersion;
        const StoreContents changed = readStore(true, &changedVersion);
        if (changedVersion == before) {
            if (!changed.empty()) {
                failure = "changes reported without a new version";
            }
        } else {
            int32_t seq = 0;
            std::string why;
            if (!wholeCommand(changed, &seq, &why)) {
                failure = "changes since " + std::to_string(before) + ": " + why;
            } else if (seq != changedVersion || changedVersion < before) {
                failure = "changes of command " + std::to_string(seq) + " at version " + std::to_string(changedVersion);
            }
        }
        ++reads;
        if (finished) {
            break;
        }
    }
    readerGaveUp = true;
    writer.join();
    EXPECT_EQ(failure, "");
    EXPECT_GE(reads.load(), kMinReads);
    EXPECT_GE(lastSeq, kMinCommits);
    // The reads really overlapped the commits.
    EXPECT_GT(distinct.size(), 1u);
    SfxParamStore::getInstance().clear();
}

}  // namespace
}  // namespace korvi
