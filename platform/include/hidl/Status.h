#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "aftplatform/export.h"

namespace android::hardware {

/// Whether a call got through to the other process.
class AFTPLATFORM_API Status {
  public:
    enum Exception : int32_t {
        EX_NONE = 0,
        EX_TRANSACTION_FAILED = -129,
    };

    static Status ok() { return {}; }
    static Status fromExceptionCode(Exception code, std::string message = {}) { return {code, std::move(message)}; }

    bool isOk() const { return mException == EX_NONE; }
    /// For messages.
    std::string description() const;

  private:
    Status() = default;
    Status(Exception code, std::string message) : mException(code), mMessage(std::move(message)) {}

    Exception mException = EX_NONE;
    std::string mMessage;
};

namespace details {

/// The transport's half of a call's answer. To look away from a failure is a bug: a failed answer that goes without
/// having been asked isOk() ends the process, and so does the reading of its value.
class AFTPLATFORM_API return_status {
  public:
    return_status() : mStatus(Status::ok()) {}
    return_status(Status status) : mStatus(std::move(status)) {}
    return_status(return_status&& other) noexcept;
    return_status& operator=(return_status&& other) noexcept;
    return_status(const return_status&) = delete;
    return_status& operator=(const return_status&) = delete;
    ~return_status();

    /// Whether the call got through.
    bool isOk() const {
        mAsked = true;
        return mStatus.isOk();
    }
    std::string description() const { return mStatus.description(); }

  protected:
    void assertOk() const;

  private:
    void assertAsked() const;

    Status mStatus;
    mutable bool mAsked = false;
};

}  // namespace details

/// What a call to another process brings back: a T, if it got through.
template <typename T>
class Return : public details::return_status {
  public:
    Return(T value) : mValue(std::move(value)) {}
    Return(Status status) : return_status(std::move(status)) {}

    /// The value. The call has got through, or the process ends.
    operator T() const {
        assertOk();
        return mValue;
    }
    T withDefault(T otherwise) const { return isOk() ? mValue : otherwise; }

  private:
    T mValue{};
};

/// What a call without a value brings back.
template <>
class Return<void> : public details::return_status {
  public:
    Return() = default;
    Return(Status status) : return_status(std::move(status)) {}
};

/// A call without a value that got through.
inline Return<void> Void() { return {}; }

}  // namespace android::hardware
