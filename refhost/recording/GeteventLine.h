#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>

#include "refhost/recording/Recording.h"

namespace refhost::getevent {

/// An event: `[   18983.942141] /dev/input/event2: 0003 0039 ffffffff rate 90`, where each part but the three numbers
/// depends on an option, and labels may stand for the numbers. Or `sendevent /dev/input/event2 3 57 -1`, in decimal.
struct Event {
    std::optional<int64_t> timeUs;
    std::string_view path;  ///< empty without a prefix
    uint16_t type = 0;
    uint16_t code = 0;
    int32_t value = 0;
};

/// `add device 3: /dev/input/event2`, `remove device 3: /dev/input/event2`
struct Hotplug {
    bool added = false;
    std::string_view path;
};

using Item = std::variant<Event, Hotplug>;

/// Walks over the items of a line, which are several where getevent ran with -n and so wrote no line ends.
class Items {
  public:
    explicit Items(std::string_view line) : mLine(line) {}

    /// The next item, or nothing. Characters before an item, such as a prompt, are passed over.
    std::optional<Item> next();

    /// What stands after the last item.
    std::string_view rest() const { return mLine.substr(mAfterItem); }

  private:
    std::string_view mLine;
    size_t mAfterItem = 0;
};

/// `  name:     "free text"`; the text may be empty and may hold quotes.
std::optional<std::string_view> deviceName(std::string_view line);

struct Axis {
    uint16_t code = 0;
    AxisRange range;
};

/// `    ABS (0003): ABS_X   : value 0, min 0, max 1079, fuzz 0, flat 0, resolution 0` or a continuation of it.
std::optional<Axis> axis(std::string_view line);

/// True of a line that has the form of an axis, whether or not `axis()` can read it.
bool looksLikeAxis(std::string_view line);

}  // namespace refhost::getevent
