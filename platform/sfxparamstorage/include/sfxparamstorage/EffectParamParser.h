// Reads a parameter blob, the one wire format between the settings service and the audio effect:
// 32-bit signed words in host byte order,
//
//   [target device, entry count, entry, entry, ...]   entry = [device, parameter id, n, n values]
//
// validate() checks the whole blob before anything is read from it; begin() and next() then walk
// its entries. The parser never reads outside [data, data + sizeBytes), and reads words with
// memcpy, so the data need not be aligned. The parser does not copy or own the blob: it must
// outlive the parser.
#pragma once

#include <cstdint>
#include <vector>

namespace android {

class EffectParamParser {
public:
    EffectParamParser(const void* data, uint32_t sizeBytes);

    // True when the blob is exactly one well-formed blob: a whole number of words, at least the
    // two header words, a non-negative entry count that matches the entries, non-negative value
    // counts that stay inside the blob, and no words after the last entry. A blob with entry
    // count 0 and no entries is well formed.
    bool validate();

    // Why validate() failed, for log lines; empty after a successful validate().
    const char* error() const { return mError; }

    // Header words; meaningful only after a successful validate().
    int32_t targetDevice() const { return mTarget; }
    uint32_t entryCount() const { return mEntryCount; }

    // Goes back to the first entry.
    void begin();

    // Reports the next entry and steps past it; false when there is none left, and always false
    // unless validate() succeeded. *values points at the entry's count values (null when count is
    // 0); it stays valid until the next call of next() or begin() and while the blob lives.
    bool next(int32_t* device, int32_t* paramId, uint32_t* count, const int32_t** values);

private:
    int32_t wordAt(uint64_t index) const;

    const unsigned char* mData;
    uint32_t mSizeBytes;
    uint64_t mWordCount;
    bool mValid = false;
    const char* mError = "not validated";
    int32_t mTarget = 0;
    uint32_t mEntryCount = 0;
    uint64_t mPos = 0;      // word index of the next entry
    uint32_t mEntriesRead = 0;
    std::vector<int32_t> mAligned;  // values copied out of an unaligned blob
};

}  // namespace android
