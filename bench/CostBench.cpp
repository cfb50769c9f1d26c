// What a frame may not do, counted; how long the slowest of them take; what loading the library costs.

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>

#include "bench/BenchPhone.h"
#include "bench/Counted.h"
#include "refhost/play/DurationHistogram.h"

namespace bench {
namespace {

using android::BitSet32;
using android::RawPointerData;
using Clock = std::chrono::steady_clock;

int64_t nanoseconds(Clock::duration time) { return std::chrono::nanoseconds(time).count(); }

constexpr int kGestures = 100;
constexpr int kFramesOfAGesture = 100;

/// Gestures of ten fingers, landed and lifted, some of them inside the filter area.
void gestures(BenchPhone& phone) {
    for (int gesture = 0; gesture < kGestures; ++gesture) {
        for (int i = 0; i < kFramesOfAGesture; ++i) {
            const bool lifted = i == kFramesOfAGesture - 1;
            RawPointerData data = fingersAt(lifted ? 0 : 10, gesture % 2 == 0 ? kMiddle : kNearSensor);
            BitSet32 ids = data.touchingIdBits;
            phone.frame(data, ids);
        }
    }
}

/// Allocations and system calls of whole gestures, per frame. The first gestures are over: what is made once is made.
void costs(benchmark::State& state) {
    BenchPhone& phone = BenchPhone::withEverything();
    gestures(phone);
    const uint64_t before = allocations();
    for ([[maybe_unused]] auto _ : state) gestures(phone);
    constexpr double kFrames = kGestures * kFramesOfAGesture;
    const auto made = static_cast<double>(allocations() - before);
    state.counters["allocs"] = made / (kFrames * static_cast<double>(state.iterations()));
    const int64_t calls = systemCallsOf([&] { gestures(phone); });
    if (calls < 0) return state.SkipWithError("this machine lets no process trace its child");
    state.counters["syscalls"] = static_cast<double>(calls) / kFrames;
}

/// Each frame by itself; the clock's own time, some 20 ns, is in it.
void slowest(benchmark::State& state) {
    BenchPhone& phone = BenchPhone::withEverything();
    RawPointerData data = fingersAt(static_cast<uint32_t>(state.range(0)), kMiddle);
    BitSet32 ids = data.touchingIdBits;
    refhost::DurationHistogram histogram;
    for ([[maybe_unused]] auto _ : state) {
        const Clock::time_point start = Clock::now();
        phone.frame(data, ids);
        histogram.add(nanoseconds(Clock::now() - start));
    }
    phone.lift();
    state.counters["p50_ns"] = static_cast<double>(histogram.percentile(0.5));
    state.counters["p99_ns"] = static_cast<double>(histogram.percentile(0.99));
}

/// From dlopen to the first frame's return, with everything on: the file is in the page cache.
void load(benchmark::State& state) {
    BenchPhone::withEverything();  // its properties are what the next library reads
    const std::string path = refhost::Plugin::defaultPath();
    refhost::Requests requests;
    refhost::HostDevice panel({.id = 3, .name = "touchpanel"}, requests);
    android::Vector<void*> keys;
    const uint64_t before = allocations();
    for ([[maybe_unused]] auto _ : state) {
        RawPointerData data = fingersAt(1, kMiddle);
        BitSet32 ids = data.touchingIdBits;
        const Clock::time_point start = Clock::now();
        const refhost::Plugin plugin(path);
        plugin.processRawTouches(panel.mapper(), 60'000'000'000, data, ids, keys);
        state.SetIterationTime(static_cast<double>(nanoseconds(Clock::now() - start)) * 1e-9);
    }
    state.counters["allocs"] = static_cast<double>(allocations() - before) / static_cast<double>(state.iterations());
    state.counters["stripped_KiB"] = static_cast<double>(std::filesystem::file_size(ZQAFT_STRIPPED_PLUGIN)) / 1024;
}

BENCHMARK(costs)->Name("costs/frame_all_and_near/10")->Unit(benchmark::kMillisecond);
BENCHMARK(slowest)->Name("slowest/frame_all")->Arg(10);
BENCHMARK(load)->Name("load/dlopen_to_first_frame")->Unit(benchmark::kMicrosecond)->UseManualTime();

}  // namespace
}  // namespace bench
