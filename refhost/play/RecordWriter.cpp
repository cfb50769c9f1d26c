#include "refhost/play/RecordWriter.h"

#include <cmath>

namespace refhost {

namespace {

/// A double holds every integer up to here.
constexpr double kExactly = 9007199254740992;

/// A number that is not finite is null: JSON has no other.
void writeNumber(TextBuffer& out, std::string_view key, double value) {
    append(out, FMT_COMPILE(R"("{}":)"), key);
    if (!std::isfinite(value)) return append(out, "null,");
    const bool isWhole = std::abs(value) < kExactly && std::trunc(value) == value;  // nearly all are
    isWhole ? append(out, FMT_COMPILE("{},"), static_cast<int64_t>(value)) : append(out, FMT_COMPILE("{},"), value);
}

void writeCause(TextBuffer& out, const android::MeasurementCause& cause) {
    if (cause.event == nullptr) return append(out, R"("cause":null)");
    append(out, R"("cause":{"event":)");
    appendJson(out, cause.event);
    out.push_back(',');
    if (cause.keyCode != 0) append(out, FMT_COMPILE(R"("key":{},)"), cause.keyCode);
    append(out, FMT_COMPILE(R"("time":{})"), cause.when);
    if (cause.until != 0) append(out, FMT_COMPILE(R"(,"until":{})"), cause.until);
    out.push_back('}');
}

}  // namespace

void writeMeasurements(TextBuffer& out, const std::vector<Measurement>& measurements) {
    appendJsonArray(out, measurements, [&](const Measurement& measured) {
        append(out, R"({"name":)");
        appendJson(out, measured.name);
        out.push_back(',');
        writeNumber(out, "value", measured.value);
        writeNumber(out, "least", measured.least);
        writeNumber(out, "most", measured.most);
        append(out, R"("unit":)");
        appendJson(out, measured.unit);
        append(out, FMT_COMPILE(R"(,"holds":{},)"), measured.holds);
        writeNumber(out, "margin", marginOf(measured));
        append(out, R"("setting":)");
        measured.setting != nullptr ? appendJson(out, measured.setting) : append(out, "null");
        out.push_back(',');
        writeCause(out, measured.cause);
        out.push_back('}');
    });
}

void writeRecord(TextBuffer& out, const Record& record) {
    append(out, R"({"filter":)");
    appendJson(out, record.filter);
    append(out, R"(,"rule":)");
    appendJson(out, record.rule);
    append(out, FMT_COMPILE(R"(,"outcome":"{}","when":{},)"), nameOf(record.outcome), record.when);
    if (record.device) append(out, FMT_COMPILE(R"("device":{},)"), *record.device);
    if (record.pointer) {
        append(out, FMT_COMPILE(R"("pointer":{},"x":{},"y":{},"extraData":{},)"), *record.pointer, record.x, record.y,
               record.extraData);
    }
    if (record.key) append(out, FMT_COMPILE(R"("key":{},)"), *record.key);
    append(out, R"("measurements":)");
    writeMeasurements(out, record.measurements);
    out.push_back('}');
}

}  // namespace refhost
