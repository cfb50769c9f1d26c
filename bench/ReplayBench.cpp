// How fast a trace goes through the tool, from the file to the results, and what that takes in memory. The floor of
// each run is what no replay can do without: reading the same file line by line.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "refhost/trace/TraceWriter.h"

namespace {

constexpr int64_t kFramesPerSecond = 120;

/// A trace of gestures of two fingers, of so many frames; written once per length, removed at exit.
class TwoFingerTrace {
  public:
    explicit TwoFingerTrace(int64_t frames)
        : mPath(std::filesystem::temp_directory_path() / fmt::format("zqaft-bench-{}-{}.jsonl", getpid(), frames)) {
        refhost::TextBuffer out;
        refhost::TraceHeader header;
        header.properties = {{"ro.zqaft.tpfp.filter_area", "400,2100,680,2340"}};
        header.devices = {{.id = 3, .name = "touchpanel"}};
        refhost::writeTrace(out, header);
        refhost::ConfigureSurface surface;
        surface.device = 3;
        surface.width = 1080;
        surface.height = 2340;
        refhost::writeTrace(out, {0, 60'000'000'000, surface});
        for (int64_t i = 0; i < frames; ++i) refhost::writeTrace(out, frame(i));
        std::ofstream(mPath, std::ios::binary).write(out.data(), static_cast<std::streamsize>(out.size()));
    }
    ~TwoFingerTrace() { std::filesystem::remove(mPath); }
    TwoFingerTrace(const TwoFingerTrace&) = delete;
    TwoFingerTrace& operator=(const TwoFingerTrace&) = delete;

    static const TwoFingerTrace& of(int64_t frames) {
        static std::map<int64_t, TwoFingerTrace> traces;
        return traces.try_emplace(frames, frames).first->second;
    }

    const std::string& path() const { return mPath; }

  private:
    static refhost::TraceLine frame(int64_t i) {
        refhost::ProcessRawTouches call;
        call.device = 3;
        call.when = 60'000'000'000 + i * (1'000'000'000 / kFramesPerSecond);
        const bool lifted = i % 100 == 99;
        for (uint32_t id = 0; id < 2 && !lifted; ++id) {
            auto& pointer = call.frame.pointers[call.frame.pointerCount];
            pointer.id = id;
            pointer.x = static_cast<int32_t>(300 + 200 * id + static_cast<uint32_t>(i % 500));
            pointer.y = static_cast<int32_t>(1900 - i % 1500);
            pointer.axes = {52, 12, 11, 0, 0, 0, 0, 0, 0, 1};
            call.frame.touchingIdBits.markBit(id);
            call.frame.idToIndex[id] = call.frame.pointerCount++;
        }
        call.ids = call.frame.touchingIdBits;
        return {0, call.when, call};
    }

    std::string mPath;
};

/// Runs the tool with its results thrown away. Answers the most memory that it held, in KiB.
long replay(const std::string& trace, const char* form) {
    const pid_t child = fork();
    if (child == 0) {
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        if (form != nullptr) execl(ZQAFT_TOOL, ZQAFT_TOOL, "replay", form, trace.c_str(), nullptr);
        execl(ZQAFT_TOOL, ZQAFT_TOOL, "replay", trace.c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    rusage used{};
    wait4(child, &status, 0, &used);
    if (status != 0) std::abort();  // a figure of a replay that failed would be a lie
    return used.ru_maxrss;
}

void replayThrough(benchmark::State& state, const char* form) {
    const std::string& trace = TwoFingerTrace::of(state.range(0)).path();
    long most = 0;
    for ([[maybe_unused]] auto _ : state) most = std::max(most, replay(trace, form));
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["KiB"] = static_cast<double>(most);
}

void readLines(benchmark::State& state) {
    const std::string& trace = TwoFingerTrace::of(state.range(0)).path();
    for ([[maybe_unused]] auto _ : state) {
        std::ifstream in(trace, std::ios::binary);
        std::string line;
        while (std::getline(in, line)) benchmark::DoNotOptimize(line.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void replayJson(benchmark::State& state) { replayThrough(state, "--json"); }
void replayStory(benchmark::State& state) { replayThrough(state, nullptr); }

// Items are frames of two fingers; KiB is the peak of the resident memory. Ten times the trace must not take more of
// it.
BENCHMARK(readLines)->Name("floor/read_lines")->Arg(200'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(replayJson)->Name("replay/json")->Arg(20'000)->Arg(200'000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(replayStory)->Name("replay/story")->Arg(20'000)->Arg(200'000)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
