#pragma once

#include <functional>
#include <string>

#include "aftplatform/export.h"
#include "android/frameworks/sensorservice/1.0/IEventQueue.h"
#include "android/frameworks/sensorservice/1.0/IEventQueueCallback.h"
#include "android/frameworks/sensorservice/1.0/types.h"
#include "android/hardware/sensors/1.0/types.h"
#include "android/hidl/base/1.0/IBase.h"
#include "hidl/Status.h"

namespace android::frameworks::sensorservice::V1_0 {

/// The sensor service as other processes see it. A call that gets through calls its completion once, before it
/// returns; one that does not get through never calls it. Any thread.
class AFTPLATFORM_API ISensorManager : public hidl::base::V1_0::IBase {
  public:
    using getDefaultSensor_cb = std::function<void(const hardware::sensors::V1_0::SensorInfo& sensor, Result result)>;
    using createEventQueue_cb = std::function<void(const sp<IEventQueue>& queue, Result result)>;

    /// Looks the service up.
    /// @param getStub true: the library of the service in this process, which there is none of
    /// @return the proxy, or null where no service of that name is registered
    static sp<ISensorManager> getService(const std::string& serviceName = "default", bool getStub = false);

    virtual hardware::Return<void> getDefaultSensor(hardware::sensors::V1_0::SensorType type,
                                                    getDefaultSensor_cb completion) = 0;
    virtual hardware::Return<void> createEventQueue(const sp<IEventQueueCallback>& callback,
                                                    createEventQueue_cb completion) = 0;

  protected:
    ISensorManager();
    ~ISensorManager() override;
};

}  // namespace android::frameworks::sensorservice::V1_0
