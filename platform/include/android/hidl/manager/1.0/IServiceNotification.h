#pragma once

#include "aftplatform/export.h"
#include "android/hidl/base/1.0/IBase.h"
#include "hidl/HidlSupport.h"
#include "hidl/Status.h"

namespace android::hidl::manager::V1_0 {

/// Told by the service manager when a service registers.
class AFTPLATFORM_API IServiceNotification : public base::V1_0::IBase {
  public:
    /// @param fqName      the interface's full name, with its version
    /// @param name        the instance's, mostly "default"
    /// @param preexisting whether it had registered before the notice was asked for
    /// On a thread of the platform's, which holds a reference meanwhile.
    virtual hardware::Return<void> onRegistration(const hardware::hidl_string& fqName,
                                                  const hardware::hidl_string& name, bool preexisting) = 0;

  protected:
    IServiceNotification();
    ~IServiceNotification() override;
};

}  // namespace android::hidl::manager::V1_0
