#pragma once

#include <utils/RefBase.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "aft/host/Export.h"

namespace android {

/// A window as the host's dispatcher knows it. Reference counted; the host fills it and changes nothing afterwards.
class InputWindowHandle : public RefBase {
  public:
    static constexpr int32_t kTypeNavigationBar = 2019;

    void* token = nullptr;  ///< null: the window is gone
    std::string name;       ///< keeps its text whatever the token is
    int32_t layoutParamsFlags = 0;
    int32_t layoutParamsType = 0;  ///< window type; 2019 marks the navigation bar
    std::array<uint8_t, 8> hostTimeout{};
    int32_t frameLeft = 0;  ///< display coordinates, as are the other three
    int32_t frameTop = 0;
    int32_t frameRight = 0;
    int32_t frameBottom = 0;
    std::array<uint8_t, 44> hostGeometry{};
    bool visible = false;
    std::array<uint8_t, 33> hostState{};
    uint8_t aftFlags = 0;  ///< kNotchArea

    /// Bit of aftFlags: a window in which the notch filter does not act.
    static constexpr uint8_t kNotchArea = 0x01;

    /// The name, or "<invalid>" for a handle without a token. The reference lives as long as the handle.
    const std::string& getName() const { return token != nullptr ? name : invalidName(); }

  private:
    static const std::string& invalidName() {
        static const std::string text = "<invalid>";
        return text;
    }
#if AFT_PHONE_LAYOUT
    static void assertLayout() {
        static_assert(offsetof(InputWindowHandle, token) == 8);
        static_assert(offsetof(InputWindowHandle, name) == 12);
        static_assert(offsetof(InputWindowHandle, layoutParamsType) == 28);
        static_assert(offsetof(InputWindowHandle, frameLeft) == 40);
        static_assert(offsetof(InputWindowHandle, frameTop) == 44);
        static_assert(offsetof(InputWindowHandle, frameRight) == 48);
        static_assert(offsetof(InputWindowHandle, frameBottom) == 52);
        static_assert(offsetof(InputWindowHandle, visible) == 100);
        static_assert(offsetof(InputWindowHandle, aftFlags) == 134);
    }
#endif
};

}  // namespace android
