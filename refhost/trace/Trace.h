#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "aft/host/RawPointerData.h"
#include "platform/control/SensorService.h"

/// A trace in memory: what docs/trace-format.md defines, with the same names, units and defaults. Times are ns.
namespace refhost {

/// An input device of the phone. `sources` is the mask that its mapper answers.
struct DeviceDescription {
    int32_t id = 0;
    std::string name;
    bool external = false;
    uint32_t sources = 4098;
};

struct TraceHeader {
    std::vector<std::pair<std::string, std::string>> properties;  ///< in the order given
    std::vector<DeviceDescription> devices;
    /// What the sensor service offers from the start, each with a handle of its own; absent: there is no service.
    std::optional<std::vector<aftplatform::sensors::Sensor>> sensors;
    std::string note;
};

/// A device's id, or nothing for a null mapper.
using DeviceRef = std::optional<int32_t>;

struct ProcessKey {
    DeviceRef device;
    int64_t when = 0;
    int32_t keyCode = 0;
    int32_t scanCode = 0;
    bool down = false;
    int32_t metaState = 0;
    uint32_t policyFlags = 0;
};

struct ProcessRawTouches {
    DeviceRef device;
    int64_t when = 0;
    android::RawPointerData frame{};
    android::BitSet32 ids{};  ///< what the host hands in beside the frame
};

struct WindowDescription {
    std::string name;
    bool token = true;
    int32_t type = 1;
    std::array<int32_t, 4> frame{};  ///< left, top, right, bottom
    bool visible = true;
    bool notchArea = false;
};

struct ProcessInputWindow {
    std::vector<WindowDescription> windows;
    std::optional<uint32_t> focused;  ///< index into `windows`
    bool keyguard = false;
};

struct ConfigureSurface {
    DeviceRef device;
    int32_t width = 0;  ///< raw panel units, as height
    int32_t height = 0;
    int32_t orientation = 0;
    std::array<float, 6> calibration{1, 0, 0, 0, 1, 0};
    std::array<int32_t, 2> rawX{};  ///< minimum, maximum
    std::array<int32_t, 2> rawY{};
    std::array<float, 2> scale{1, 1};  ///< x, y
    std::array<float, 2> translate{};
};

struct NotifyInputStart {};
struct NotifyInputExit {};
struct NotifyScreenState {};

struct SetProperty {
    std::string key;
    std::string value;
};

/// A sample, for every queue on which `handle` is enabled.
struct SensorEvent {
    int32_t type = 0;
    int32_t handle = 0;
    int64_t timestamp = 0;
    std::vector<float> values;  ///< kMostValues at most; those that are missing are 0

    static constexpr size_t kMostValues = decltype(aftplatform::sensors::Event::u.data)().size();
};

/// Something becomes of the sensor service: some of its calls fail from now on, and then its state changes.
struct SensorService {
    enum class State { Dies, Registers, Absent, Present };

    std::optional<std::map<aftplatform::sensors::Call, aftplatform::sensors::Fault>> fails;  ///< all others are mended
    std::optional<State> state;
};

using TraceEvent = std::variant<ProcessKey, ProcessRawTouches, ProcessInputWindow, ConfigureSurface, NotifyInputStart,
                                NotifyInputExit, NotifyScreenState, SetProperty, SensorEvent, SensorService>;

/// One line after the header.
struct TraceLine {
    uint32_t line = 0;         ///< its number in the file, from 1; the header is 1
    std::optional<int64_t> t;  ///< the monotonic clock from this line on; absent: as it was
    TraceEvent event;
};

/// Where a replay takes its lines from: a trace file, or a recording that is imported on the way.
class TraceSource {
  public:
    virtual ~TraceSource() = default;
    virtual const TraceHeader& header() const = 0;
    /// Reads the next line over `line`. False at the end. A fault is thrown as InputError.
    virtual bool next(TraceLine& line) = 0;
    /// How much of it has been read, 0 to 1, or nothing where that cannot be known (a pipe).
    virtual std::optional<double> progress() = 0;
    /// True when the next line has to be waited for: what there is to show should be shown now.
    virtual bool wouldWait() { return false; }
    /// What was left out on the way, one sentence each; complete once next() has answered false.
    virtual std::vector<std::string> leftOut() const { return {}; }
};

}  // namespace refhost
