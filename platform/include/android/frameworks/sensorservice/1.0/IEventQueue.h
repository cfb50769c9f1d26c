#pragma once

#include <cstdint>

#include "aftplatform/export.h"
#include "android/frameworks/sensorservice/1.0/types.h"
#include "android/hidl/base/1.0/IBase.h"
#include "hidl/Status.h"

namespace android::frameworks::sensorservice::V1_0 {

/// A client's own queue of events; it goes with the last reference. Any thread.
class AFTPLATFORM_API IEventQueue : public hidl::base::V1_0::IBase {
  public:
    /// From now on the sensor's events come to the queue's callback.
    /// @param sensorHandle            of a SensorInfo
    /// @param samplingPeriodUs        microseconds; 0: as fast as the sensor can
    /// @param maxBatchReportLatencyUs microseconds that an event may wait for others; 0: not at all
    virtual hardware::Return<Result> enableSensor(int32_t sensorHandle, int32_t samplingPeriodUs,
                                                  int64_t maxBatchReportLatencyUs) = 0;
    virtual hardware::Return<Result> disableSensor(int32_t sensorHandle) = 0;

  protected:
    IEventQueue();
    ~IEventQueue() override;
};

}  // namespace android::frameworks::sensorservice::V1_0
