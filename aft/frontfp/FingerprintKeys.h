#pragma once

#include <cstdint>

namespace android {

/// What the fingerprint sensor's driver says through key codes, as the input device named "fingerprint".
struct FingerprintKeys {
    static constexpr char kDeviceName[] = "fingerprint";

    // Event keys: what the sensor makes of a finger on it; dispatched like other keys unless the filter takes them.
    static constexpr int32_t kEnter = 66;
    static constexpr int32_t kEvent501 = 501;
    static constexpr int32_t kEvent502 = 502;
    static constexpr int32_t kEvent511 = 511;
    static constexpr int32_t kEvent512 = 512;
    static constexpr int32_t kEvent513 = 513;
    static constexpr int32_t kEvent514 = 514;
    static constexpr int32_t kFingerUp = 515;
    static constexpr int32_t kEvent601 = 601;

    // Notification keys: what the sensor is doing; never dispatched.
    static constexpr int32_t kFingerDown = 516;
    static constexpr int32_t kIdentifyStart = 517;
    static constexpr int32_t kIdentifyEnd = 518;
    static constexpr int32_t kEnrollStart = 519;

    /// 516 to 519.
    static constexpr bool isNotification(int32_t keyCode) { return (keyCode & ~3) == kFingerDown; }

    static constexpr bool isEvent(int32_t keyCode) {
        switch (keyCode) {
            case kEnter:
            case kEvent501:
            case kEvent502:
            case kEvent511:
            case kEvent512:
            case kEvent513:
            case kEvent514:
            case kFingerUp:
            case kEvent601: return true;
            default: return false;
        }
    }

    /// Event keys that a touch on the sensor may hold back until it is clear what it is.
    static constexpr bool canBeHeldBack(int32_t keyCode) {
        return keyCode == kEvent513 || keyCode == kEvent514 || keyCode == kEvent601;
    }

    /// Keys that a finger sliding over the sensor makes.
    static constexpr bool comesFromSwipe(int32_t keyCode) {
        return keyCode == kEvent513 || keyCode == kEvent514 || keyCode == kFingerDown;
    }
};

}  // namespace android
