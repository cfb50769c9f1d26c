#pragma once

#include <cstdint>

#include "hidl/HidlSupport.h"

namespace android::hardware::sensors::V1_0 {

/// What a sensor measures. Those above DEVICE_PRIVATE_BASE are the phone maker's own.
enum class SensorType : int32_t {
    ORIENTATION = 3,
    DEVICE_PRIVATE_BASE = 0x10000,
};

/// What a call came to.
enum class Result : int32_t {
    OK = 0,
    PERMISSION_DENIED = -1,
    NO_MEMORY = -12,
    BAD_VALUE = -22,
    INVALID_OPERATION = -38,
};

/// A sensor as its service describes it.
struct SensorInfo {
    int32_t sensorHandle = 0;
    SensorType type{};
};

/// What an event measured; which values mean something depends on the sensor's type.
struct EventPayload {
    hidl_array<float, 16> data{};
};

/// One sample of one sensor.
struct Event {
    int64_t timestamp = 0;  ///< ns, monotonic clock
    int32_t sensorHandle = 0;
    SensorType sensorType{};
    EventPayload u;
};

}  // namespace android::hardware::sensors::V1_0
