#include "refhost/play/ResultWriter.h"

#include "platform/control/LogSink.h"
#include "refhost/play/RecordWriter.h"
#include "refhost/trace/SensorNames.h"

namespace refhost {

namespace {

using android::BitSet32;
using android::NotifyKeyArgs;
using android::RawPointerData;

void writeKey(TextBuffer& out, const NotifyKeyArgs& key) {
    append(out, FMT_COMPILE(R"({{"eventTime":{},"deviceId":{},"source":{},"policyFlags":{},"action":{},"flags":{},)"),
           key.eventTime, key.deviceId, key.source, key.policyFlags, key.action, key.flags);
    append(out, FMT_COMPILE(R"("keyCode":{},"scanCode":{},"metaState":{},"downTime":{}}})"), key.keyCode, key.scanCode,
           key.metaState, key.downTime);
}

void writeFrame(TextBuffer& out, const FrameResult& result) {
    const RawPointerData& frame = result.frame;
    append(out, R"("frame":{"pointers":[)");
    BitSet32 indexed = frame.touchingIdBits;
    for (uint32_t i = 0; i < frame.recordCount(); ++i) {
        if (i > 0) out.push_back(',');
        appendJson(out, frame.pointers[i]);
        indexed.markBit(frame.pointers[i].id);
    }
    append(out, R"(],"touching":)");
    appendJson(out, frame.touchingIdBits);
    append(out, R"(,"hovering":)");
    appendJson(out, frame.hoveringIdBits);
    append(out, R"(,"idToIndex":)");
    char separator = '{';
    for (uint32_t id : indexed) {
        append(out, FMT_COMPILE(R"({}"{}":{})"), separator, id, frame.idToIndex[id]);
        separator = ',';
    }
    append(out, separator == '{' ? "{}}" : "}}");

    append(out, R"(,"ids":)");
    appendJson(out, result.ids);
    append(out, R"(,"removed":)");
    appendJson(out, result.removed);
    append(out, R"(,"keys":)");
    appendJsonArray(out, result.keys, [&](const NotifyKeyArgs& key) { writeKey(out, key); });
    out.push_back(',');
}

}  // namespace

void writeResult(TextBuffer& out, const CallResult& result) {
    append(out, FMT_COMPILE(R"({{"line":{},)"), result.line);
    if (result.keyResult) append(out, FMT_COMPILE(R"("result":{},)"), *result.keyResult);
    if (result.hasFrame) writeFrame(out, result.frame);
    if (!result.requests.cancelled.empty()) {
        append(out, R"("cancelled":)");
        appendJsonNumbers(out, result.requests.cancelled);
        out.push_back(',');
    }
    if (!result.requests.reports.empty()) {
        append(out, R"("reports":)");
        appendJsonArray(out, result.requests.reports, [&](const Report& report) {
            append(out, FMT_COMPILE(R"({{"event":{},"text":)"), report.event);
            appendJson(out, report.text);
            out.push_back('}');
        });
        out.push_back(',');
    }
    if (!result.requests.service.empty()) {
        append(out, R"("service":)");
        appendJsonArray(out, result.requests.service, [&](const aftplatform::sensors::Reached& reached) {
            append(out, FMT_COMPILE(R"({{"call":"{}","arguments":)"), nameOf(kServiceCalls, reached.call));
            appendJsonNumbers(out, reached.arguments);
            out.push_back('}');
        });
        out.push_back(',');
    }
    append(out, R"("log":)");
    appendJsonArray(out, result.log, [&](const LogEntry& entry) {
        append(out, FMT_COMPILE(R"({{"priority":"{}","tag":)"), aftplatform::priorityName(entry.priority));
        appendJson(out, entry.tag);
        append(out, R"(,"text":)");
        appendJson(out, entry.text);
        out.push_back('}');
    });
    append(out, R"(,"decisions":)");
    appendJsonArray(out, result.records, [&](const Record& record) { writeRecord(out, record); });
    append(out, "}\n");
}

}  // namespace refhost
