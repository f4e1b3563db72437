// One parameter blob for the effect, built entry by entry and handed to the shared store in one
// piece. The blob is a list of 32-bit words:
//   [target device, entry count, entries...]
// and each entry is
//   [device, parameter id, value count n, n values].
#pragma once

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "effect/SfxParameter.h"

namespace korvi {

class SfxEffect;

class SetParamCommand {
public:
    // One value list of an entry made of several lists, borrowed for the duration of add(): a
    // stored list, or a few words of the caller's own (a header, a single computed value).
    class ValueList {
    public:
        ValueList(const std::vector<int>& list) : mData(list.data()), mSize(list.size()) {}  // NOLINT
        ValueList(const int* data, size_t size) : mData(data), mSize(size) {}
        const int* begin() const { return mData; }
        const int* end() const { return mData + mSize; }
        size_t size() const { return mSize; }

    private:
        const int* mData;
        size_t mSize;
    };

    // target: the device the command is made for; 0x40000000 when it carries every device.
    explicit SetParamCommand(int target);
    virtual ~SetParamCommand();

    // Sends the blob when it holds at least one entry. Returns 0 when there was nothing to send
    // and -22 after a send, whatever the store made of it: callers ignore the status.
    virtual int execute(SfxEffect& effect);

    // The device stamped into every entry added from now on (-1 until set).
    void setDeviceId(int device) { mDeviceId = device; }
    int getDeviceId() const { return mDeviceId; }
    int getEntryCount() const { return mEntryCount; }

    // [device, id, 1, value]
    void add(SfxParameter parameter, int value);
    // [device, id, n, values]; values must not be null.
    void add(SfxParameter parameter, const std::vector<int>* values);
    // [device, id, total, the lists concatenated in order]
    void add(SfxParameter parameter, std::initializer_list<ValueList> lists);
    // [device, id, 1 + total, first, the lists concatenated in order]
    void add(SfxParameter parameter, int first, std::initializer_list<ValueList> lists);

    // Makes room for words more words, so that a large send does not grow the blob step by step.
    void reserve(size_t words) { mBlob.reserve(mBlob.size() + words); }

    // The blob as it stands; word 1 holds the entry count only once the command was executed.
    const std::vector<int>& getBlob() const { return mBlob; }

private:
    static constexpr size_t kInitialCapacityWords = 64;

    void appendHeader(SfxParameter parameter, size_t count);
    void appendValues(std::initializer_list<ValueList> lists);

    int mDeviceId = -1;
    int mEntryCount = 0;
    std::vector<int> mBlob;
};

}  // namespace korvi
