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

/// All in which the subscriptions of the two sensors differ. Rows without a value are the managers' own code.
namespace sensor_differences {

using Number = SensorDifference<int32_t>;
using Choice = SensorDifference<bool>;
using Text = SensorDifference<const char*>;

// clang-format off
//                                              slide cover                     fold angle
//                           manager            ZqAftSCStateManager             ZqAftFoldableStateManager
inline constexpr Text        kLogTag           {"ZqAftSCStateManager",          "ZqFoldableDeviceAftProcessor"};
inline constexpr Number      kSensorType       {65557,                          3};
//                           period, latency    0, 0                            0, 0

//                           connecting         init                            initLocked
inline constexpr Choice      kEnablingConnects {false,                          true};  // or else it connects once, when it is made
inline constexpr Text        kConnecting       {nullptr,                        "ZqAftFoldableStateManager init"};  // error line at its start
//                           extra work         none                            the angle windows are prepared

inline constexpr Text        kEnable           {"enableSCSensor",               "enableSensor"};
inline constexpr Text        kDisable          {"disableSCSensor",              "disableSensor"};
inline constexpr Text        kEnabledFlag      {"mSCSensorEnabled",             "mSensorEnabled"};
inline constexpr Text        kNull             {"NULL",                         "nullptr"};
//                           extra work         none                            disabling empties the angle windows
//                           lock around both   mOperationLock                  mOperationLock
//                           enabled()          does not wait for it            does

//                           letting go         deInit                          deInit; also empties the angle windows
//                           the recipient has  mSCFilter                       nothing
//                           serviceDied        deInit, under                   info "ZqAftFoldableStateManager serviceDied!"
//                                              ZqAftSCStateInterface::sLock
//                           onRegistration     init, then enableSCSensor,      nothing
//                                              under the same lock
// clang-format on

}  // namespace sensor_differences

}  // namespace android
