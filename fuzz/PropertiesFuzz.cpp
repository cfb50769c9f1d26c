#include <sys/mman.h>
#include <unistd.h>

#include "aft/frontfp/AftAreaConfig.h"
#include "cutils/properties.h"
#include "fuzz/Oracles.h"
#include "platform/control/Properties.h"

namespace {

namespace properties = aftplatform::properties;

/// What property_get() gives of a property; "absent" where it is unset or empty.
std::string got(const std::string& key) {
    char value[PROPERTY_VALUE_MAX];
    property_get(key.c_str(), value, "absent");
    android::AftAreaConfig config;
    android::AftArea area{};
    const bool placed = config.scan(value) && config.areaOn(1080, 2340, area);
    refhost::require(!placed || (area.left >= 0 && area.right <= 1080), "an area lies on its surface");
    return value;
}

/// The trace that a profile begins whose property file holds the text.
std::string traceWith(const std::string& text) {
    constexpr int kFile = 100;
    static const int memory = dup2(memfd_create("properties", 0), kFile);
    const bool kept = ftruncate(memory, 0) == 0 && pwrite(memory, text.data(), text.size(), 0) == ssize_t(text.size());
    refhost::require(kept, "the file of the properties can be written");
    const refhost::Profile profile = refhost::parseProfile(
        "{properties_file: 100, touch: {name: p, id: 3, surface: {width: 9, height: 9}}}", "in", "/proc/self/fd");
    refhost::TextBuffer out;
    writeTrace(out, refhost::TraceHeader{profile.properties, {}, {}, {}});
    return fmt::to_string(out);
}

}  // namespace

// An engineer's property file would crash the tool, be refused at a wrong place, or give other settings than it says.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    properties::clearAll();
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::istringstream in(text);
    properties::Entries entries;
    const bool read = refhost::readsOrRefuses(text, [&] {
        try {
            entries = properties::parse(in, "in");
        } catch (const properties::ParseError& fault) {
            throw refhost::InputError(fault.what());
        }
    });
    if (!read) return 0;
    for (const auto& [key, value] : entries) {
        const bool fits = value.size() <= properties::kMaxValueLength;
        try {
            properties::set(key, value);
        } catch (const std::invalid_argument&) {
            refhost::require(!fits, "a value that a phone takes can be set");
            continue;
        }
        refhost::require(fits && properties::get(key) == value, "a property is as set, and no longer than a phone's");
        if ((key + value).find('\0') != std::string::npos) continue;
        refhost::require(got(key) == (value.empty() ? "absent" : value), "a property reads as set");
    }
    refhost::requireATrace(traceWith(text));
    return 0;
}
