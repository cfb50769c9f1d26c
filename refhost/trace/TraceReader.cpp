#include "refhost/trace/TraceReader.h"

#include <filesystem>
#include <iostream>
#include <map>
#include <set>

#include "refhost/Files.h"
#include "refhost/InputError.h"
#include "refhost/trace/JsonFields.h"
#include "refhost/trace/TraceEvents.h"

namespace refhost {

namespace {

constexpr int64_t kVersion = 1;
constexpr size_t kLongestPropertyValue = 91;

void readProperties(const JsonLine::Value& value, const JsonPlace& place, TraceHeader& header) {
    if (value.kind() != JsonLine::Kind::Object) place.fault("not an object; expected key and value pairs");
    std::set<std::string_view> seen;
    for (auto it = value.begin(); !(it == value.end()); ++it) {
        const JsonPlace here(place, it.key());
        if (it.key().empty()) place.fault("a property without a name; expected one");
        std::string text;
        readJson(*it, here, text);
        checkPropertyValue(text, here);
        if (!seen.insert(it.key()).second) here.fault("given twice; expected once");
        header.properties.emplace_back(std::string(it.key()), std::move(text));
    }
}

void readDevices(const JsonLine::Value& value, const JsonPlace& place, TraceHeader& header) {
    if (value.kind() != JsonLine::Kind::Array) place.fault("not an array; expected the devices");
    std::set<int32_t> ids;
    for (const JsonLine::Value element : value) {
        const JsonPlace here(place, header.devices.size());
        JsonFields fields(element, here);
        DeviceDescription device;
        fields.required("id", device.id);
        fields.required("name", device.name);
        fields.optional("external", device.external);
        fields.optional("sources", device.sources);
        fields.done();
        if (!ids.insert(device.id).second) {
            JsonPlace(here, "id").fault("another device has it; expected an id of its own");
        }
        header.devices.push_back(std::move(device));
    }
}

void readSensors(const JsonLine::Value& value, const JsonPlace& place, TraceHeader& header) {
    if (value.kind() != JsonLine::Kind::Array) place.fault("not an array; expected the sensors");
    header.sensors.emplace();
    std::vector<aftplatform::sensors::Sensor>& sensors = *header.sensors;
    std::map<int32_t, size_t> indexOf;
    for (const JsonLine::Value element : value) {
        const JsonPlace here(place, sensors.size());
        JsonFields fields(element, here);
        aftplatform::sensors::Sensor sensor;
        fields.required("type", sensor.type);
        fields.required("handle", sensor.handle);
        fields.done();
        if (const auto [other, isNew] = indexOf.emplace(sensor.handle, sensors.size()); !isNew) {
            JsonPlace(here, "handle")
                .fault(fmt::format("sensors[{}] has it; expected a handle of its own", other->second));
        }
        sensors.push_back(sensor);
    }
}

}  // namespace

void checkPropertyValue(const std::string& text, const JsonPlace& place) {
    if (text.size() > kLongestPropertyValue) {
        place.fault(fmt::format("{} bytes long; expected at most {}", text.size(), kLongestPropertyValue));
    }
}

TraceReader::TraceReader(const std::string& path)
    : mName(path == "-" ? "standard input" : path),
      mOwned(path == "-" ? nullptr : openFile(path)),
      mIn(mOwned ? mOwned.get() : &std::cin) {
    std::error_code fault;
    const auto size = std::filesystem::file_size(path, fault);
    if (mOwned && !fault) mSize = static_cast<double>(size);
    readHeader();
}

TraceReader::TraceReader(std::istream& in, std::string name) : mName(std::move(name)), mIn(&in) { readHeader(); }

bool TraceReader::readLine() {
    if (!std::getline(*mIn, mText)) {
        if (mIn->bad()) throw FileError(fmt::format("{}: cannot be read further after line {}", mName, mLineNumber));
        return false;
    }
    ++mLineNumber;
    mRead += static_cast<double>(mText.size() + 1);
    const size_t first = mText.find_first_not_of(" \t\r");
    const bool blank = first == std::string::npos;
    if (!blank && mJson.parse(mText)) return true;
    const JsonPlace place(mName, mLineNumber);
    if (mLineNumber == 1 && (blank || mText[first] != '{')) {
        JsonPlace(place, "trace")
            .fault("no JSON object, so no trace; expected its header (a recording needs --profile)");
    }
    if (blank) place.fault("empty; expected a JSON object");
    throw InputError(mName, mLineNumber, "json", mJson.error() + "; expected one JSON object on the line");
}

void TraceReader::readHeader() {
    if (!readLine()) throw InputError(mName, 1, "trace", "the file is empty; expected the header of a trace");
    const JsonPlace place(mName, mLineNumber);
    JsonFields fields(mJson.root(), place);
    std::string format;
    if (!fields.optional("trace", format)) JsonPlace(place, "trace").fault("no header; expected \"trace\": \"zqaft\"");
    if (format != "zqaft") JsonPlace(place, "trace").fault("not a trace of this kind; expected \"zqaft\"");
    int64_t version = 0;
    fields.required("version", version);
    if (version != kVersion) JsonPlace(place, "version").fault(fmt::format("unknown; expected {}", kVersion));
    fields.with("properties", [&](const auto& value, const auto& here) { readProperties(value, here, mHeader); });
    fields.with("devices", [&](const auto& value, const auto& here) { readDevices(value, here, mHeader); });
    fields.with("sensors", [&](const auto& value, const auto& here) { readSensors(value, here, mHeader); });
    fields.optional("note", mHeader.note);
    fields.done();
}

bool TraceReader::next(TraceLine& line) {
    if (!readLine()) return false;
    line.line = mLineNumber;
    readTraceLine(mJson.root(), JsonPlace(mName, mLineNumber), mHeader, line);
    checkTime(line);
    return true;
}

void TraceReader::checkTime(const TraceLine& line) {
    if (!line.t) return;
    if (*line.t < mClock) {
        throw InputError(mName, mLineNumber, "t", fmt::format("moves the clock back; expected {} or later", mClock));
    }
    mClock = *line.t;
}

std::optional<double> TraceReader::progress() {
    if (!mSize || *mSize <= 0) return std::nullopt;
    return mRead / *mSize;
}

bool TraceReader::wouldWait() { return mIn->rdbuf()->in_avail() <= 0; }

}  // namespace refhost
