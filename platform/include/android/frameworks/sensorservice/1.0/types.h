#pragma once

#include "android/hardware/sensors/1.0/types.h"

namespace android::frameworks::sensorservice::V1_0 {

/// What a call to the sensor service came to.
using hardware::sensors::V1_0::Result;

}  // namespace android::frameworks::sensorservice::V1_0
