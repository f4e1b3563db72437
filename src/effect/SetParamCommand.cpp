#define LOG_TAG "SetParamCommand"

#include "effect/SetParamCommand.h"

#include <limits>

#include "effect/CheckedCount.h"
#include "effect/SfxEffect.h"

#include <log/log.h>

namespace korvi {

namespace {

// The storage of the last blob this thread let go of. Commands are made and dropped one at a
// time on the thread that drives the effect, so each new blob reuses the previous one's storage
// instead of allocating (and growing) a fresh array for every send.
thread_local std::vector<int> tSpareBlob;

size_t totalLength(std::initializer_list<SetParamCommand::ValueList> lists) {
    int32_t total = 0;
    for (const SetParamCommand::ValueList& list : lists) total = checkedCount(total, list.size());
    return static_cast<size_t>(total);
}

}  // namespace

SetParamCommand::SetParamCommand(int target) {
    mBlob.swap(tSpareBlob);
    mBlob.clear();
    // Room for a typical change at once, so that small commands grow without reallocating.
    mBlob.reserve(kInitialCapacityWords);
    mBlob.push_back(target);
    mBlob.push_back(0);
}

SetParamCommand::~SetParamCommand() {
    // Keep the larger of the two arrays for the next command.
    if (mBlob.capacity() > tSpareBlob.capacity()) mBlob.swap(tSpareBlob);
}

int SetParamCommand::execute(SfxEffect& effect) {
    if (mEntryCount == 0) return 0;
    mBlob[1] = mEntryCount;
    // The store takes the size in bytes as an unsigned 32-bit number.
    const size_t words = mBlob.size();
    LOG_ALWAYS_FATAL_IF(words > std::numeric_limits<unsigned>::max() / sizeof(int),
                        "blob of %zu words is too large to send", words);
    effect.sendSharedStore(mBlob.data(), static_cast<unsigned>(words * sizeof(int)));
    return -22;
}

void SetParamCommand::add(SfxParameter parameter, int value) {
    appendHeader(parameter, 1);
    mBlob.push_back(value);
}

void SetParamCommand::add(SfxParameter parameter, const std::vector<int>* values) {
    LOG_ALWAYS_FATAL_IF(values == nullptr, "%s: null value list for %s", __func__,
                        sfxParameterCode(parameter));
    appendHeader(parameter, values->size());
    mBlob.insert(mBlob.end(), values->begin(), values->end());
}

void SetParamCommand::add(SfxParameter parameter, std::initializer_list<ValueList> lists) {
    appendHeader(parameter, totalLength(lists));
    appendValues(lists);
}

void SetParamCommand::add(SfxParameter parameter, int first,
                          std::initializer_list<ValueList> lists) {
    appendHeader(parameter, checkedCount(1, totalLength(lists)));
    mBlob.push_back(first);
    appendValues(lists);
}

void SetParamCommand::appendHeader(SfxParameter parameter, size_t count) {
    // Every check comes before the first word is written, so an abort never leaves half an entry.
    const int32_t id = sfxParameterId(parameter);
    const int32_t checked = checkedCount(0, count);
    mEntryCount = checkedCount(mEntryCount, 1);
    mBlob.push_back(mDeviceId);
    mBlob.push_back(id);
    mBlob.push_back(checked);
}

void SetParamCommand::appendValues(std::initializer_list<ValueList> lists) {
    for (const ValueList& list : lists) mBlob.insert(mBlob.end(), list.begin(), list.end());
}

}  // namespace korvi
