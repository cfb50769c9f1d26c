#include <linux/input-event-codes.h>

#include <functional>
#include <map>

#include "refhost/recording/GeteventLine.h"
#include "refhost/recording/Readers.h"
#include "refhost/recording/Text.h"

namespace refhost {

namespace {

using getevent::Event;
using getevent::Hotplug;

class GeteventReader {
  public:
    explicit GeteventReader(const std::string& file) {
        mRecording.file = file;
        mRecording.format = "getevent";
        mRecording.hasTimes = false;
    }

    Recording read(std::string_view text) {
        Lines lines(text);
        while (lines.next()) {
            mLine = lines.number();
            if (!readItems(lines.line()) && !readDescription(lines.line(), lines.terminated())) {
                skipLine(mRecording, mLine, lines.line());
            }
        }
        mRecording.lines = lines.number();
        return std::move(mRecording);
    }

  private:
    /// False if the line holds no item.
    bool readItems(std::string_view line) {
        getevent::Items items(line);
        bool any = false;
        while (const auto item = items.next()) {
            any = true;
            std::visit([this](const auto& found) { take(found); }, *item);
        }
        if (any) skipLine(mRecording, mLine, items.rest());
        return any;
    }

    void take(const Event& event) {
        mDescribed.reset();
        if (event.timeUs) {
            mRecording.hasTimes = true;
            mNowUs = *event.timeUs;
        }
        append(deviceAt(event.path), event.type, event.code, event.value);
    }

    void take(const Hotplug& plugged) {
        if (plugged.added) {
            mDescribed = deviceAt(plugged.path);
            return;
        }
        const auto known = mCurrentAt.find(plugged.path);
        if (known == mCurrentAt.end() || !mHasEvents[known->second]) return;
        append(known->second, EV_SYN, SYN_DROPPED, 0);
        append(known->second, EV_SYN, SYN_REPORT, 0);
    }

    /// Lines of the block that follows `add device`. Messages on stderr may stand in the middle of it.
    bool readDescription(std::string_view line, bool terminated) {
        if (!mDescribed) return false;
        if (const auto name = getevent::deviceName(line)) {
            nameDescribed(std::string(*name));
            return true;
        }
        if (const auto axis = getevent::axis(line)) {
            mRecording.devices[*mDescribed].axes[axis->code] = axis->range;
            return true;
        }
        const bool indented = line.substr(0, 2) == "  ";
        return indented && terminated && !getevent::looksLikeAxis(line);
    }

    /// A path that comes back under another name belongs to another device; under the same name it is the same one.
    void nameDescribed(const std::string& name) {
        const RecordedDevice& described = mRecording.devices[*mDescribed];
        if (!described.name.empty() && described.name != name) mDescribed = addDevice(described.path);
        mRecording.devices[*mDescribed].name = name;
    }

    /// The device that is at `path` now; events without a path come from a device of their own.
    uint32_t deviceAt(std::string_view path) {
        const auto known = mCurrentAt.find(path);
        return known != mCurrentAt.end() ? known->second : addDevice(std::string(path));
    }

    uint32_t addDevice(std::string path) {
        const auto index = static_cast<uint32_t>(mRecording.devices.size());
        RecordedDevice& device = mRecording.devices.emplace_back();
        device.path = path;
        device.line = mLine;
        mHasEvents.push_back(false);
        mCurrentAt[std::move(path)] = index;
        return index;
    }

    void append(uint32_t device, uint16_t type, uint16_t code, int32_t value) {
        mHasEvents[device] = true;
        mRecording.events.push_back({mNowUs, device, mLine, type, code, value});
    }

    Recording mRecording;
    uint32_t mLine = 0;
    int64_t mNowUs = 0;
    std::optional<uint32_t> mDescribed;                       ///< the device whose description block is open
    std::map<std::string, uint32_t, std::less<>> mCurrentAt;  ///< path to the device that is there now
    std::vector<bool> mHasEvents;                             ///< per device
};

}  // namespace

Recording readGetevent(std::string_view text, const std::string& file) { return GeteventReader(file).read(text); }

Recording readGetevent(std::istream& in, const std::string& file) { return readGetevent(readAll(in), file); }

}  // namespace refhost
