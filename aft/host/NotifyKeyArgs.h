#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace android {

/// The host's key notification record, 64 bytes on every machine. The plug-in makes one in a block of
/// `allocNotifyKeyArgs` and fills the fields marked (*) and no others: the object header, the sequence number and the
/// display are the host's, and hold whatever the heap held.
struct NotifyKeyArgs {
    std::array<uint8_t, 4> objectHeader;
    uint32_t sequenceNum;
    int64_t eventTime;  ///< (*) ns
    int32_t deviceId;   ///< (*)
    uint32_t source;    ///< (*) source mask of the mapper
    int32_t displayId;
    uint32_t policyFlags;  ///< (*)
    int32_t action;        ///< (*) kActionDown or kActionUp
    int32_t flags;         ///< (*) always kFlagFromSystem
    int32_t keyCode;       ///< (*)
    int32_t scanCode;      ///< (*)
    int32_t metaState;     ///< (*)
    std::array<uint8_t, 4> padding;
    int64_t downTime;  ///< (*) ns, the same as eventTime

    static constexpr int32_t kActionDown = 0;
    static constexpr int32_t kActionUp = 1;
    static constexpr int32_t kFlagFromSystem = 8;
};

static_assert(std::is_trivial_v<NotifyKeyArgs> && std::is_standard_layout_v<NotifyKeyArgs>);
static_assert(sizeof(NotifyKeyArgs) == 64);
static_assert(offsetof(NotifyKeyArgs, sequenceNum) == 4);
static_assert(offsetof(NotifyKeyArgs, eventTime) == 8);
static_assert(offsetof(NotifyKeyArgs, deviceId) == 16);
static_assert(offsetof(NotifyKeyArgs, source) == 20);
static_assert(offsetof(NotifyKeyArgs, displayId) == 24);
static_assert(offsetof(NotifyKeyArgs, policyFlags) == 28);
static_assert(offsetof(NotifyKeyArgs, action) == 32);
static_assert(offsetof(NotifyKeyArgs, flags) == 36);
static_assert(offsetof(NotifyKeyArgs, keyCode) == 40);
static_assert(offsetof(NotifyKeyArgs, scanCode) == 44);
static_assert(offsetof(NotifyKeyArgs, metaState) == 48);
static_assert(offsetof(NotifyKeyArgs, downTime) == 56);

}  // namespace android
