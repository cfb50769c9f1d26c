#include "refhost/profile/Timeline.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "platform/control/Properties.h"
#include "refhost/profile/SensorTimeline.h"

namespace refhost {

namespace {

WindowDescription readWindow(const YAML::Node& node, const YamlPlace& place) {
    WindowDescription window;
    YamlFields fields(node, place);
    fields.required("name", window.name);
    fields.optional("token", window.token);
    fields.optional("type", window.type);
    fields.optional("frame", window.frame);
    fields.optional("visible", window.visible);
    fields.optional("notch_area", window.notchArea);
    fields.done();
    return window;
}

/// Where the timeline has got to.
class TimelineReader {
  public:
    explicit TimelineReader(const Profile& start)
        : mSensors(start.sensors.value_or(Sensors())),
          mSurface(start.surface),
          mShown(start.windows.value_or(ProcessInputWindow())) {}

    /// All that the entries read so far stand for, by time: what goes on for a while lies among the later ones.
    std::vector<TimelineEntry> take() {
        const auto earlier = [](const TimelineEntry& a, const TimelineEntry& b) { return a.atNs < b.atNs; };
        std::stable_sort(mEntries.begin(), mEntries.end(), earlier);
        return std::move(mEntries);
    }

    void readEntry(const YAML::Node& node, const YamlPlace& place) {
        YamlFields fields(node, place);
        double seconds = 0;
        fields.required("at", seconds);
        constexpr double kYear = 366.0 * 24 * 3600;
        if (seconds < 0 || seconds > kYear)
            place.below("at").fault(node, "expected seconds from the start, 0 to 366 days");
        mAt = std::llround(seconds * 1e9);
        if (mAt < mLast) place.below("at").fault(node, "earlier than the entry before; expected them in order");
        mLast = mAt;

        const size_t before = mEntries.size();
        bool any = false;
        const auto rotate = [&](const YAML::Node& value, const YamlPlace& at) {
            readYamlWithin(value, at, mSurface.orientation, 0, 3);
        };
        if (fields.with("rotate", rotate)) any = add(mSurface);
        if (readShown(fields, mShown)) any = add(mShown);
        any |= fields.with("property", [&](const YAML::Node& map, const YamlPlace& at) {
            for (auto& [key, value] : readProperties(map, at)) add(SetProperty{key, value});
        });
        if (auto service = readSensorService(fields)) any = add(std::move(*service));
        any |= fields.with("input", [&](const YAML::Node& value, const YamlPlace& at) {
            std::string state;
            readYaml(value, at, state);
            if (state == "start") {
                add(NotifyInputStart{});
            } else if (state == "exit") {
                add(NotifyInputExit{});
            } else {
                at.fault(value, "expected start or exit");
            }
        });
        for (TimelineEntry& sample : readSamples(fields, mSensors, mAt)) {
            mEntries.push_back(std::move(sample));
            any = true;
        }
        fields.done();
        if (!any) {
            place.fault(node,
                        "nothing happens; expected rotate, windows, focused, keyguard, property, sensor_service, "
                        "input, sensor, slide_cover or fold_angle");
        }
        for (size_t i = before; i < mEntries.size(); ++i) mBytes += bytesOf(mEntries[i].event);
        if (mBytes > kMostBytes) {
            place.fault(node,
                        "more happens up to here than can be kept; expected fewer samples, windows or properties");
        }
    }

  private:
    using Sensors = std::vector<aftplatform::sensors::Sensor>;

    bool add(TraceEvent event) {
        mEntries.push_back({mAt, std::move(event)});
        return true;
    }

    /// Some 50,000 lines or windows. A few words can stand for thousands of samples, each change of the windows lists
    /// all of them, and an alias repeats an entry: a small file could ask for more memory than a desk has.
    static constexpr size_t kMostBytes = size_t{64} << 20;

    /// Roughly what an event takes of memory, and of the trace.
    static size_t bytesOf(const TraceEvent& event) {
        size_t bytes = sizeof(TimelineEntry);
        if (const auto* property = std::get_if<SetProperty>(&event)) bytes += property->key.size();
        if (const auto* shown = std::get_if<ProcessInputWindow>(&event)) {
            for (const WindowDescription& window : shown->windows) bytes += sizeof(TimelineEntry) + window.name.size();
        }
        return bytes;
    }

    std::vector<TimelineEntry> mEntries;
    size_t mBytes = 0;  ///< of the entries
    Sensors mSensors;
    ConfigureSurface mSurface;
    ProcessInputWindow mShown;
    int64_t mAt = 0;
    int64_t mLast = 0;
};

}  // namespace

std::vector<std::pair<std::string, std::string>> readProperties(const YAML::Node& node, const YamlPlace& place) {
    if (!node.IsMap()) place.fault(node, "not a map; expected properties with values");
    constexpr size_t kLongest = aftplatform::properties::kMaxValueLength;
    std::vector<std::pair<std::string, std::string>> properties;
    std::set<std::string> seen;
    for (const auto& entry : node) {
        std::string key;
        readYaml(entry.first, place, key);
        if (key.empty()) place.fault(entry.first, "a property without a name; expected one");
        if (!seen.insert(key).second) place.below(key).fault(entry.first, "given twice; expected once");
        std::string value;
        readYaml(entry.second, place.below(key), value);
        if (value.size() > kLongest) {
            place.below(key).fault(entry.second,
                                   fmt::format("{} bytes long; expected at most {}", value.size(), kLongest));
        }
        properties.emplace_back(key, value);
    }
    return properties;
}

bool readShown(YamlFields& fields, ProcessInputWindow& shown) {
    const bool windows = fields.with("windows", [&](const YAML::Node& list, const YamlPlace& place) {
        if (!list.IsSequence()) place.fault(list, "not a list; expected the windows");
        shown.windows.clear();
        shown.focused.reset();
        for (size_t i = 0; i < list.size(); ++i) shown.windows.push_back(readWindow(list[i], place.at(i)));
    });
    const bool focused = fields.with("focused", [&](const YAML::Node& node, const YamlPlace& place) {
        if (node.IsScalar() && node.Scalar() == "none") return shown.focused.reset();
        int64_t index = 0;
        readYaml(node, place, index);
        if (index < 0 || static_cast<uint64_t>(index) >= shown.windows.size()) {
            place.fault(node, "no window of this index; expected one of the list, from 0, or none");
        }
        shown.focused = static_cast<uint32_t>(index);
    });
    const bool keyguard = fields.optional("keyguard", shown.keyguard);
    return windows || focused || keyguard;
}

std::vector<TimelineEntry> readTimeline(const YAML::Node& list, const YamlPlace& place, const Profile& start) {
    if (!list.IsSequence()) place.fault(list, "not a list; expected what happens, in order");
    TimelineReader timeline(start);
    for (size_t i = 0; i < list.size(); ++i) timeline.readEntry(list[i], place.at(i));
    return timeline.take();
}

}  // namespace refhost
