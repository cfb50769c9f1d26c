#include "refhost/profile/Profile.h"

#include <libevdev/libevdev.h>

#include <filesystem>
#include <sstream>

#include "platform/control/Properties.h"
#include "refhost/Files.h"
#include "refhost/YamlText.h"
#include "refhost/profile/SensorTimeline.h"
#include "refhost/profile/Timeline.h"
#include "refhost/profile/YamlFields.h"

namespace refhost {

namespace {

constexpr uint32_t kKeyboardSource = 257;

using Properties = std::vector<std::pair<std::string, std::string>>;

/// Each property once, where it came first, with the value that came last.
Properties lastOfEach(const Properties& given) {
    Properties properties;
    std::map<std::string_view, size_t> indexOf;
    for (const auto& [key, value] : given) {
        const auto [known, isNew] = indexOf.emplace(key, properties.size());
        if (isNew) {
            properties.emplace_back(key, value);
        } else {
            properties[known->second].second = value;
        }
    }
    return properties;
}

void readPropertyFile(const YAML::Node& node, const YamlPlace& place, const std::string& folder, Profile& profile) {
    std::string path;
    readYaml(node, place, path);
    const std::string found = (std::filesystem::path(folder) / path).string();  // an absolute path stays itself
    std::istringstream text;
    try {
        text.str(readFile(found));
    } catch (const FileError& fault) {
        place.fault(node, fault.what());
    }
    try {
        size_t tooLong = 0;
        size_t notUtf8 = 0;
        for (auto& [key, value] : aftplatform::properties::parse(text, found)) {
            if (value.size() > aftplatform::properties::kMaxValueLength) {
                ++tooLong;
            } else if (!isUtf8(key) || !isUtf8(value)) {
                ++notUtf8;
            } else {
                profile.properties.emplace_back(std::move(key), std::move(value));
            }
        }
        const auto note = [&](size_t count, const std::string& which) {
            if (count == 0) return;
            const std::string counted = count == 1 ? "1 property" : fmt::format("{} properties", count);
            profile.notes.push_back(fmt::format("{}: {} {} left out", found, counted, which));
        };
        note(tooLong, fmt::format("of more than {} bytes", aftplatform::properties::kMaxValueLength));
        note(notUtf8, "not in UTF-8");
    } catch (const aftplatform::properties::ParseError& fault) {
        throw InputError(fault.what());
    }
}

/// The keys that both devices have.
void readDevice(YamlFields& fields, ProfileDevice& device) {
    fields.required("name", device.device.name);
    fields.required("id", device.device.id);
    fields.optional("external", device.device.external);
    fields.optional("sources", device.device.sources);
    fields.optional("recorded", device.recorded);
}

void readSurface(const YAML::Node& node, const YamlPlace& place, ConfigureSurface& surface) {
    YamlFields fields(node, place);
    const auto size = [&](const std::string& key, int32_t& field) {
        fields.required(key, field);
        if (field < 1) place.below(key).fault(node[key], "expected 1 or more");
    };
    size("width", surface.width);
    size("height", surface.height);
    fields.with("orientation", [&](const YAML::Node& value, const YamlPlace& at) {
        readYamlWithin(value, at, surface.orientation, 0, 3);
    });
    fields.optional("calibration", surface.calibration);
    surface.rawX = {0, surface.width - 1};
    surface.rawY = {0, surface.height - 1};
    const auto range = [&](const std::string& key, std::array<int32_t, 2>& field) {
        fields.optional(key, field);
        if (field[0] > field[1]) place.below(key).fault(node[key], "expected the lowest value first");
    };
    range("raw_x", surface.rawX);
    range("raw_y", surface.rawY);
    fields.optional("scale", surface.scale);
    fields.optional("translate", surface.translate);
    fields.done();
}

void readTouch(const YAML::Node& node, const YamlPlace& place, Profile& profile) {
    YamlFields fields(node, place);
    readDevice(fields, profile.touch);
    profile.surface.device = profile.touch.device.id;
    const auto surface = [&](const YAML::Node& value, const YamlPlace& at) { readSurface(value, at, profile.surface); };
    if (!fields.with("surface", surface)) place.below("surface").fault(node, "missing; expected this key");
    fields.done();
}

/// A scan code as a number, or as the kernel's name of the key.
uint16_t readScanCode(const YAML::Node& node, const YamlPlace& place) {
    const std::string text = node.IsScalar() ? node.Scalar() : "";
    if (const int code = libevdev_event_code_from_name(EV_KEY, text.c_str()); code >= 0) {
        return static_cast<uint16_t>(code);
    }
    uint16_t code = 0;
    int64_t number = 0;
    if (!node.IsScalar() || !YAML::convert<int64_t>::decode(node, number)) {
        place.fault(node, "no scan code; expected a number or a name such as KEY_SELECT");
    }
    readYaml(node, place, code);
    return code;
}

void readKeys(const YAML::Node& node, const YamlPlace& place, Profile& profile) {
    ProfileKeys& keys = profile.keys.emplace();
    keys.device.sources = kKeyboardSource;
    YamlFields fields(node, place);
    readDevice(fields, keys);
    fields.optional("policy_flags", keys.policyFlags);
    fields.with("scancodes", [&](const YAML::Node& map, const YamlPlace& at) {
        if (!map.IsMap()) at.fault(map, "not a map; expected scan codes with key codes");
        for (const auto& entry : map) {
            const YamlPlace here = at.below(entry.first.Scalar());
            const uint16_t scanCode = readScanCode(entry.first, here);
            if (keys.keyCodes.contains(scanCode)) here.fault(entry.first, "given twice; expected once");
            readYaml(entry.second, here, keys.keyCodes[scanCode]);
        }
    });
    fields.done();
    if (keys.device.id == profile.touch.device.id) {
        place.below("id").fault(node, "the touch device has it; expected an id of its own");
    }
}

Profile readDocument(const YAML::Node& document, const std::string& file, const std::string& folder) {
    Profile profile;
    profile.file = file;
    const YamlPlace place{file, ""};
    if (!document.IsMap()) place.fault(document, "not a map; expected a profile");
    YamlFields fields(document, place);
    fields.with("properties_file",
                [&](const YAML::Node& node, const YamlPlace& at) { readPropertyFile(node, at, folder, profile); });
    fields.with("properties", [&](const YAML::Node& node, const YamlPlace& at) {
        for (auto& property : readProperties(node, at)) profile.properties.push_back(std::move(property));
    });
    profile.properties = lastOfEach(profile.properties);
    const auto touch = [&](const YAML::Node& node, const YamlPlace& at) { readTouch(node, at, profile); };
    if (!fields.with("touch", touch)) place.below("touch").fault(document, "missing; expected this key");
    fields.with("keys", [&](const YAML::Node& node, const YamlPlace& at) { readKeys(node, at, profile); });
    fields.with("sensors",
                [&](const YAML::Node& node, const YamlPlace& at) { profile.sensors = readSensors(node, at); });
    profile.sensorService = readSensorService(fields);
    ProcessInputWindow shown;
    if (readShown(fields, shown)) profile.windows = shown;
    // Last: it goes by all the rest.
    fields.with("timeline", [&](const YAML::Node& node, const YamlPlace& at) {
        profile.timeline = readTimeline(node, at, profile);
    });
    fields.optional("note", profile.note);
    fields.done();
    return profile;
}

}  // namespace

Profile parseProfile(const std::string& text, const std::string& file, const std::string& folder) {
    try {
        return readDocument(yamlDocument(text), file, folder);
    } catch (const YAML::Exception& fault) {
        const uint32_t line = fault.mark.line < 0 ? 1 : static_cast<uint32_t>(fault.mark.line) + 1;
        throw InputError(file, line, "yaml", fault.msg + "; expected YAML");
    }
}

Profile readProfile(const std::string& path) {
    return parseProfile(readFile(path), path, std::filesystem::path(path).parent_path().string());
}

}  // namespace refhost
