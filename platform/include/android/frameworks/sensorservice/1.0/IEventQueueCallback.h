#pragma once

#include "aftplatform/export.h"
#include "android/hardware/sensors/1.0/types.h"
#include "android/hidl/base/1.0/IBase.h"
#include "hidl/Status.h"

namespace android::frameworks::sensorservice::V1_0 {

/// Where the events of one queue go.
class AFTPLATFORM_API IEventQueueCallback : public hidl::base::V1_0::IBase {
  public:
    /// On a thread of the platform's, which holds a reference meanwhile.
    virtual hardware::Return<void> onEvent(const hardware::sensors::V1_0::Event& event) = 0;

  protected:
    IEventQueueCallback();
    ~IEventQueueCallback() override;
};

}  // namespace android::frameworks::sensorservice::V1_0
