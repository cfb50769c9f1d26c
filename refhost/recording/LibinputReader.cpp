#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "refhost/YamlText.h"
#include "refhost/recording/LibinputText.h"
#include "refhost/recording/Readers.h"
#include "refhost/recording/Text.h"

namespace refhost {

namespace {

/// Keys that are not named here are passed over, as the format asks of its readers.
class LibinputReader {
  public:
    explicit LibinputReader(const std::string& file) {
        mRecording.file = file;
        mRecording.format = "libinput";
    }

    Recording read(std::string_view text) {
        const std::string document = libinput::documentIn(text, mRecording);
        mMostSeen = 2 * document.size();
        try {
            readDocument(yamlDocument(document));
        } catch (const YAML::Exception& fault) {
            fail(fault.mark, "YAML", fmt::format("{}, expected a document as libinput record writes it", fault.msg));
        }
        // Each device brought a list of its own; events of one moment stay in the order of the devices.
        std::stable_sort(mRecording.events.begin(), mRecording.events.end(),
                         [](const KernelEvent& a, const KernelEvent& b) { return a.timeUs < b.timeUs; });
        return std::move(mRecording);
    }

  private:
    void readDocument(const YAML::Node& document) {
        if (!document.IsMap())
            fail(document.Mark(), "devices", "no document of keys and values, expected version, devices");
        if (const YAML::Node version = document["version"]; version && scalar(version) != "1") {
            fail(version.Mark(), "version", fmt::format("'{}' is not known, expected 1", scalar(version)));
        }
        const YAML::Node devices = document["devices"];
        if (!devices) fail(document.Mark(), "devices", "missing, expected a list");
        for (const YAML::Node& device : list(devices, "devices")) readDevice(map(device, "devices"));
    }

    void readDevice(const YAML::Node& device) {
        const auto index = static_cast<uint32_t>(mRecording.devices.size());
        RecordedDevice& recorded = mRecording.devices.emplace_back();
        recorded.line = lineOf(device.Mark());
        if (const YAML::Node node = device["node"]) recorded.path = name(node);
        if (const YAML::Node evdev = device["evdev"]; evdev && !evdev.IsNull()) {
            readDescription(map(evdev, "evdev"), recorded);
        }
        if (const YAML::Node events = device["events"]) {
            for (const YAML::Node& item : list(events, "events")) {
                // Beside the kernel's events, an item may hold what the library made of them.
                const YAML::Node frame = map(item, "events")["evdev"];
                if (!frame) continue;
                for (const YAML::Node& event : list(frame, "events: evdev")) readEvent(event, index);
            }
        }
    }

    void readDescription(const YAML::Node& evdev, RecordedDevice& recorded) {
        if (const YAML::Node node = evdev["name"]) recorded.name = name(node);
        const YAML::Node ranges = evdev["absinfo"];
        if (!ranges || ranges.IsNull()) return;
        for (const auto& axis : map(ranges, "absinfo")) {
            const auto code = number(axis.first, "absinfo", 0, std::numeric_limits<uint16_t>::max());
            const std::string key = fmt::format("absinfo: {}", code);
            const YAML::Node range = list(axis.second, key);
            if (range.size() != 5) {
                fail(axis.first.Mark(), key,
                     fmt::format("{} numbers, expected 5: min, max, fuzz, flat, resolution", range.size()));
            }
            recorded.axes[static_cast<uint16_t>(code)] = {int32(range[0], key), int32(range[1], key)};
        }
    }

    /// `[sec, usec, type, code, value]`, all decimal.
    void readEvent(const YAML::Node& event, uint32_t device) {
        constexpr const char* kKey = "events: evdev";
        if (!event.IsSequence() || event.size() != 5) {
            fail(event.Mark(), kKey, "expected a list of 5 numbers: seconds, microseconds, type, code, value");
        }
        count(event, event.size(), kKey);
        constexpr int64_t kMax16 = std::numeric_limits<uint16_t>::max();
        const auto timeUs = microseconds(number(event[0], kKey, 0, std::numeric_limits<int64_t>::max()),
                                         number(event[1], kKey, 0, std::numeric_limits<int64_t>::max()));
        if (!timeUs) fail(event.Mark(), kKey, "no time: expected seconds and 0..999999 microseconds");
        mRecording.events.push_back({*timeUs, device, lineOf(event.Mark()),
                                     static_cast<uint16_t>(number(event[2], kKey, 0, kMax16)),
                                     static_cast<uint16_t>(number(event[3], kKey, 0, kMax16)), int32(event[4], kKey)});
    }

    /// An alias repeats what it stands for without writing it again, and so could make anything of a small file. Each
    /// element, key or character that is looked at counts; what is written out takes a byte for each, or nearly so.
    void count(const YAML::Node& node, size_t seen, const std::string& key) {
        mSeen += seen;
        if (mSeen > mMostSeen) fail(node.Mark(), key, "aliases make more of this than the text can hold");
    }

    /// A list; an empty value (null) is a list of nothing.
    YAML::Node list(const YAML::Node& node, const std::string& key) {
        if (node.IsNull()) return YAML::Node(YAML::NodeType::Sequence);
        if (!node.IsSequence()) fail(node.Mark(), key, "expected a list");
        count(node, node.size(), key);
        return node;
    }

    const YAML::Node& map(const YAML::Node& node, const std::string& key) {
        if (!node.IsMap()) fail(node.Mark(), key, "expected keys and values");
        count(node, node.size(), key);
        return node;
    }

    std::string name(const YAML::Node& node) {
        count(node, scalar(node).size(), "devices");
        return scalar(node);
    }

    static std::string scalar(const YAML::Node& node) { return node.IsScalar() ? node.Scalar() : std::string(); }

    int64_t number(const YAML::Node& node, const std::string& key, int64_t smallest, int64_t largest) const {
        const std::string text = scalar(node);
        const auto parsed = decimalNumber(text);
        if (!parsed || *parsed < smallest || *parsed > largest) {
            fail(node.Mark(), key,
                 fmt::format("'{}' is no decimal number of {}..{}", text.substr(0, 20), smallest, largest));
        }
        return *parsed;
    }

    int32_t int32(const YAML::Node& node, const std::string& key) const {
        return static_cast<int32_t>(
            number(node, key, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
    }

    /// Marks count from 0; a node that stands nowhere has -1.
    static uint32_t lineOf(const YAML::Mark& mark) { return static_cast<uint32_t>(std::max(mark.line + 1, 1)); }

    [[noreturn]] void fail(const YAML::Mark& mark, const std::string& key, const std::string& text) const {
        throw InputError(mRecording.file, lineOf(mark), key, text);
    }

    Recording mRecording;
    size_t mSeen = 0;
    size_t mMostSeen = 0;
};

}  // namespace

Recording readLibinput(std::string_view text, const std::string& file) { return LibinputReader(file).read(text); }

Recording readLibinput(std::istream& in, const std::string& file) { return readLibinput(readAll(in), file); }

}  // namespace refhost
