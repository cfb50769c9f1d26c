#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "aftplatform/export.h"
#include "utils/RefBase.h"

namespace android::hidl::base::V1_0 {
class IBase;
}

namespace android::hardware {

/// A text that crosses between processes.
class hidl_string {
  public:
    hidl_string() = default;
    hidl_string(const char* text) : mText(text) {}
    hidl_string(std::string text) : mText(std::move(text)) {}

    const char* c_str() const { return mText.c_str(); }
    size_t size() const { return mText.size(); }
    bool empty() const { return mText.empty(); }
    operator std::string() const { return mText; }

    friend bool operator==(const hidl_string& a, const hidl_string& b) { return a.mText == b.mText; }
    friend bool operator==(const hidl_string& a, const char* b) { return a.mText == b; }

  private:
    std::string mText;
};

/// An array of fixed size within a record that crosses between processes.
template <typename T, size_t N>
using hidl_array = std::array<T, N>;

/// Told when a service's process has died. Whoever tells it holds a reference meanwhile, and no lock.
class AFTPLATFORM_API hidl_death_recipient : public virtual RefBase {
  public:
    /// @param cookie what linkToDeath() was given
    /// @param who    the proxy of the dead service
    /// On a thread of the platform's.
    virtual void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) = 0;

  protected:
    hidl_death_recipient();
    ~hidl_death_recipient() override;
};

}  // namespace android::hardware
