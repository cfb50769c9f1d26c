#pragma once

#include <cstdint>

namespace android {

/// Whose subscription it is: the columns of the table below.
enum class SensorUser { SlideCover, FoldAngle };

template <typename T>
struct SensorDifference {
    T slideCover;
    T foldAngle;

    constexpr T of(SensorUser user) const { return user == SensorUser::SlideCover ? slideCover : foldAngle; }
};

/// All in which one sensor's subscription differs from the other's. A row without a value is the managers' own code.
namespace sensor_differences {

using Type = SensorDifference<int32_t>;
using Switch = SensorDifference<bool>;
using Text = SensorDifference<const char*>;

// clang-format off
//                                  slide cover: ZqAftSCStateManager                    fold angle: ZqAftFoldableStateManager
inline constexpr Text   kLogTag    {"ZqAftSCStateManager",                              "ZqFoldableDeviceAftProcessor"};
inline constexpr Type   kSensorType{65557,                                              3};
//       sampling, batching         as fast as it can, none                             the same

//       connecting                 init                                                initLocked
//       when it connects           as it is made, once                                 with each enabling until it has
inline constexpr Switch kConnectsWhenEnabled{false,                                     true};
//       error line at its start
inline constexpr Text   kConnecting{nullptr,                                            "ZqAftFoldableStateManager init"};
//       extra work                 none                                                prepares the angle windows

//       enabling                   enableSCSensor                                      enableSensor
inline constexpr Text   kEnabling  {"enableSCSensor",                                   "enableSensor"};
inline constexpr Text   kNotConnected{"enableSCSensor() mInitCheck is false",           "enableSensor() mInitCheck is false"};
inline constexpr Text   kNothingToEnableOn{
                                    "enableSCSensor() mSensorManager/mSensorEventQueue is NULL",
                                                                                        "enableSensor() mSensorManager/mSensorEventQueue is nullptr"};
inline constexpr Text   kNoSuchSensor{"enableSCSensor getDefaultSensor res not ok",     "enableSensor getDefaultSensor res not ok"};
inline constexpr Text   kEnabled   {"enableSCSensor success",                           "enableSensor success"};

//       disabling                  disableSCSensor                                     disableSensor
inline constexpr Text   kDisabling {"disableSCSensor",                                  "disableSensor"};
//       with connected, enabled
inline constexpr Text   kNotEnabled{"disableSCSensor() mInitCheck=%d, mSCSensorEnabled=%d", "disableSensor() mInitCheck=%d, mSensorEnabled=%d"};
inline constexpr Text   kNothingToDisableOn{
                                    "disableSCSensor() mSensorEventQueue is NULL",      "disableSensor() mSensorEventQueue is nullptr"};
//       extra work                 none                                                empties the angle windows

//       whether it is enabled      answered at once                                    waits for the operation under way
//       letting go, extra work     none                                                empties the angle windows
//       death recipient holds      mSCFilter                                           nothing
//       the service has died       deInit, under the instance's lock                   a line in the log
//       it has registered          init, enableSCSensor, under that lock               nothing
// clang-format on

}  // namespace sensor_differences

}  // namespace android
