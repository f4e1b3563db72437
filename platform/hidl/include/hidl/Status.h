// Host stand-in of the hardware-interface call status: the outcome of a call made through the
// transport (Status) and the value it returned (Return<T>).
#pragma once

#include <stdint.h>

#include <string>
#include <utility>

namespace android {
namespace hardware {

class Status {
public:
    enum Exception : int32_t {
        EX_NONE = 0,
        EX_SECURITY = -1,
        EX_ILLEGAL_ARGUMENT = -3,
        EX_NULL_POINTER = -4,
        EX_ILLEGAL_STATE = -5,
        EX_UNSUPPORTED_OPERATION = -7,
        EX_TRANSACTION_FAILED = -129,
    };

    static Status ok() { return Status(); }
    static Status fromExceptionCode(int32_t exceptionCode) { return Status(exceptionCode); }

    Status() : mException(EX_NONE) {}

    bool isOk() const { return mException == EX_NONE; }
    int32_t exceptionCode() const { return mException; }
    std::string description() const;

private:
    explicit Status(int32_t exception) : mException(exception) {}

    int32_t mException;
};

namespace details {

class return_status {
public:
    return_status() = default;
    explicit return_status(Status status) : mStatus(status) {}

    bool isOk() const { return mStatus.isOk(); }
    bool isDeadObject() const { return mStatus.exceptionCode() == Status::EX_TRANSACTION_FAILED; }
    std::string description() const { return mStatus.description(); }
    const Status& status() const { return mStatus; }

private:
    Status mStatus;
};

}  // namespace details

template <typename T>
class Return : public details::return_status {
public:
    Return(T value) : details::return_status(), mValue(std::move(value)) {}  // NOLINT: implicit
    Return(Status status) : details::return_status(status), mValue() {}     // NOLINT: implicit

    const T& withDefault(const T& fallback) const { return isOk() ? mValue : fallback; }
    operator T() const { return mValue; }

private:
    T mValue;
};

template <>
class Return<void> : public details::return_status {
public:
    Return() : details::return_status() {}
    Return(Status status) : details::return_status(status) {}  // NOLINT: implicit
};

inline Return<void> Void() { return Return<void>(); }

}  // namespace hardware
}  // namespace android
