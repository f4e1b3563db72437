#include "sfxparamstorage/EffectParamParser.h"

#include <cstring>

namespace android {

namespace {
constexpr uint64_t kHeaderWords = 2;
constexpr uint64_t kEntryHeaderWords = 3;  // device, parameter id, value count
}  // namespace

EffectParamParser::EffectParamParser(const void* data, uint32_t sizeBytes)
    : mData(static_cast<const unsigned char*>(data)), mSizeBytes(sizeBytes), mWordCount(sizeBytes / 4) {}

int32_t EffectParamParser::wordAt(uint64_t index) const {
    int32_t word;
    std::memcpy(&word, mData + index * 4, sizeof(word));
    return word;
}

bool EffectParamParser::validate() {
    mValid = false;
    mEntriesRead = 0;
    mPos = kHeaderWords;
    if (mSizeBytes % 4 != 0) {
        mError = "size is not a whole number of 32-bit words";
        return false;
    }
    if (mWordCount < kHeaderWords) {
        mError = "shorter than the two header words";
        return false;
    }
    if (mData == nullptr) {
        mError = "no data";
        return false;
    }
    const int32_t declared = wordAt(1);
    if (declared < 0) {
        mError = "negative entry count";
        return false;
    }
    uint64_t pos = kHeaderWords;
    for (int32_t i = 0; i < declared; ++i) {
        if (mWordCount - pos < kEntryHeaderWords) {
            mError = "fewer entries than the entry count";
            return false;
        }
        const int32_t n = wordAt(pos + 2);
        if (n < 0) {
            mError = "negative value count";
            return false;
        }
        pos += kEntryHeaderWords;
        if (mWordCount - pos < static_cast<uint64_t>(n)) {
            mError = "value count runs past the end";
            return false;
        }
        pos += static_cast<uint64_t>(n);
    }
    if (pos != mWordCount) {
        mError = "words after the last entry";
        return false;
    }
    mTarget = wordAt(0);
    mEntryCount = static_cast<uint32_t>(declared);
    mError = "";
    mValid = true;
    return true;
}

void EffectParamParser::begin() {
    mPos = kHeaderWords;
    mEntriesRead = 0;
}

bool EffectParamParser::next(int32_t* device, int32_t* paramId, uint32_t* count, const int32_t** values) {
    // validate() proved that every declared entry lies inside the blob; the checks here only keep
    // a parser that was never validated (or failed) from reading at all.
    if (!mValid || mEntriesRead >= mEntryCount || mWordCount - mPos < kEntryHeaderWords) {
        return false;
    }
    const uint32_t n = static_cast<uint32_t>(wordAt(mPos + 2));
    if (mWordCount - mPos - kEntryHeaderWords < n) {
        return false;
    }
    *device = wordAt(mPos);
    *paramId = wordAt(mPos + 1);
    *count = n;
    const unsigned char* first = mData + (mPos + kEntryHeaderWords) * 4;
    if (n == 0) {
        *values = nullptr;
    } else if (reinterpret_cast<uintptr_t>(first) % alignof(int32_t) == 0) {
        *values = reinterpret_cast<const int32_t*>(first);
    } else {
        // An int32_t pointer into an unaligned blob must not be handed out: copy the values.
        mAligned.resize(n);
        std::memcpy(mAligned.data(), first, static_cast<size_t>(n) * 4);
        *values = mAligned.data();
    }
    mPos += kEntryHeaderWords + n;
    ++mEntriesRead;
    return true;
}

}  // namespace android
