#include "refhost/export/ChromeEvents.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace refhost {

namespace {

constexpr size_t kFirstProcess = 10'000'000;
constexpr size_t kFirstThread = 20'000'000;

/// Exact: a double would lose the ns of large times.
void appendUs(TextBuffer& out, uint64_t ns) { append(out, FMT_COMPILE("{}.{:03}"), ns / 1000, ns % 1000); }

void appendTime(TextBuffer& out, int64_t when) {
    append(out, R"(,"ts":)");
    if (when < 0) out.push_back('-');
    const auto ns = static_cast<uint64_t>(when);
    appendUs(out, when < 0 ? 0 - ns : ns);
}

/// The main thread of a process has the number of the process.
void appendThread(TextBuffer& out, const ChromeEvents::Track& track) {
    append(out, FMT_COMPILE(R"(,"tid":{})"),
           track.thread == 0 ? kFirstProcess + track.process : kFirstThread + track.thread);
}

void appendArguments(TextBuffer& out, std::string_view arguments) {
    append(out, FMT_COMPILE(R"(,"args":{}}})"), arguments);
}

}  // namespace

TextBuffer& ChromeEvents::begin(std::string_view phase, std::string_view name, size_t process) {
    TextBuffer& out = mEvents.next();
    append(out, FMT_COMPILE("\n{{\"ph\":\"{}\",\"name\":"), phase);
    appendJson(out, name);
    append(out, FMT_COMPILE(R"(,"pid":{})"), kFirstProcess + process);
    return out;
}

void ChromeEvents::addMetadata(std::string_view name, const Track& track, std::string_view key,
                               std::string_view value) {
    TextBuffer& out = begin("M", name, track.process);
    appendThread(out, track);
    append(out, FMT_COMPILE(R"(,"args":{{"{}":{}}}}})"), key, value);
}

size_t ChromeEvents::addProcess(std::string_view name, int sortIndex) {
    const Track mainThread{++mProcesses, 0};
    TextBuffer quoted;
    appendJson(quoted, name);
    addMetadata("process_name", mainThread, "name", {quoted.data(), quoted.size()});
    addMetadata("process_sort_index", mainThread, "sort_index", std::to_string(sortIndex));
    return mainThread.process;
}

ChromeEvents::Track ChromeEvents::addTrack(size_t process, std::string_view name) {
    mSlicesEnd.push_back(std::numeric_limits<int64_t>::min());
    const Track track{process, mSlicesEnd.size()};
    TextBuffer quoted;
    appendJson(quoted, name);
    addMetadata("thread_name", track, "name", {quoted.data(), quoted.size()});
    addMetadata("thread_sort_index", track, "sort_index", std::to_string(track.thread));
    return track;
}

void ChromeEvents::addSlice(const Track& track, int64_t begin, int64_t end, std::string_view name,
                            std::string_view arguments) {
    int64_t& last = mSlicesEnd[track.thread - 1];
    const int64_t from = std::max(begin, last);
    last = std::max(end, from);
    TextBuffer& out = this->begin("X", name, track.process);
    appendThread(out, track);
    appendTime(out, from);
    append(out, R"(,"dur":)");
    appendUs(out, static_cast<uint64_t>(last) - static_cast<uint64_t>(from));
    appendArguments(out, arguments);
}

void ChromeEvents::addInstant(const Track& track, int64_t when, std::string_view name, std::string_view arguments) {
    TextBuffer& out = begin("i", name, track.process);
    appendThread(out, track);
    appendTime(out, when);
    append(out, R"(,"s":"t")");
    appendArguments(out, arguments);
}

void ChromeEvents::addCounter(size_t process, int64_t when, std::string_view name, double value) {
    if (!std::isfinite(value)) return;
    TextBuffer& out = begin("C", name, process);
    appendTime(out, when);
    append(out, FMT_COMPILE(R"(,"args":{{"value":{}}}}})"), value);
}

void ChromeEvents::write(TextBuffer& out) const {
    append(out, R"({"displayTimeUnit":"ms",)");
    mEvents.write(out, "traceEvents");
    append(out, "}\n");
}

}  // namespace refhost
