#pragma once

#include <cstdint>

#include "aftplatform/export.h"
#include "hidl/HidlSupport.h"
#include "hidl/Status.h"
#include "utils/RefBase.h"

namespace android::hidl::base::V1_0 {

/// Base of every interface that crosses between processes.
class AFTPLATFORM_API IBase : public virtual RefBase {
  public:
    /// Asks to be told of the death of the process that the object lives in, once.
    /// @return whether that was taken on
    /// Whoever links keeps a reference to the recipient for as long as it wants to hear.
    virtual hardware::Return<bool> linkToDeath(const sp<hardware::hidl_death_recipient>& recipient, uint64_t cookie);

  protected:
    IBase();
    ~IBase() override;
};

}  // namespace android::hidl::base::V1_0
