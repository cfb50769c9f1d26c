#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "aft/host/Export.h"

namespace android {

// The order of the virtual operations here is this build's own, as is what a device holds beside what the plug-in
// reads: a build for a phone takes these types from the host's headers instead.

/// Where the host's policy takes reports of filtered touches.
class InputReaderPolicyInterface {
  public:
    virtual ~InputReaderPolicyInterface() = default;
    virtual void reportEvent(const char* message, int32_t eventId) = 0;
};

class InputReaderContext {
  public:
    virtual ~InputReaderContext() = default;
    /// The policy, or null.
    virtual InputReaderPolicyInterface* getPolicy() = 0;
};

/// An input device of the host. The plug-in reads its id, name and external flag; the rest is the host's.
struct InputDevice {
    InputReaderContext* context = nullptr;
    int32_t id = 0;
    int32_t generation = 0;
    int32_t controllerNumber = 0;
    std::string name;
    std::array<uint8_t, 80> hostState{};
    uint8_t isExternal = 0;  ///< nonzero: not built into the phone
};

/// The host's mapper of one input device, as far as the plug-in calls on it. It belongs to the host and outlives every
/// call, every key that is held back for it, and the touch sequence in which its gesture was cancelled. Its device is
/// never null.
class InputMapper {
  public:
    InputMapper(InputDevice* device, InputReaderContext* context) : mDevice(device), mContext(context) {}
    InputMapper(const InputMapper&) = delete;
    InputMapper& operator=(const InputMapper&) = delete;
    virtual ~InputMapper() = default;

    /// Source mask of the events that the mapper makes.
    virtual uint32_t getSources() = 0;
    /// Cancels the gesture in progress. `when` in ns. On the thread that brought the frame.
    virtual void cancelTouch(int64_t when) = 0;

    int32_t getDeviceId() const { return mDevice->id; }
    const std::string& getDeviceName() const { return mDevice->name; }
    bool isDeviceExternal() const { return mDevice->isExternal != 0; }
    InputReaderContext* getContext() const { return mContext; }

  protected:
    InputDevice* mDevice;
    InputReaderContext* mContext;

  private:
#if AFT_PHONE_LAYOUT
    static void assertLayout() {
        static_assert(offsetof(InputMapper, mDevice) == 4);
        static_assert(offsetof(InputMapper, mContext) == 8);
    }
#endif
};

#if AFT_PHONE_LAYOUT
static_assert(sizeof(std::string) == 12);
static_assert(offsetof(InputDevice, id) == 4);
static_assert(offsetof(InputDevice, name) == 16);
static_assert(offsetof(InputDevice, isExternal) == 108);
#endif

}  // namespace android
