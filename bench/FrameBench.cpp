// What a frame, a key and a window list cost the input service, beside the floor: what the locks, the copy and the
// references of that design cost and nothing else.

#include <benchmark/benchmark.h>
#include <utils/Mutex.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

#include <array>

#include "bench/BenchPhone.h"

namespace bench {
namespace {

using android::BitSet32;
using android::Mutex;
using android::RawPointerData;
using android::sp;

constexpr size_t kLocks = 9;
constexpr size_t kReferences = 3;

struct Referenced : virtual android::RefBase {};  // as the filters derive

/// A copy of the frame, nine locks that nobody else wants, three references taken and given up.
void floorOf(benchmark::State& state) {
    const refhost::Plugin& plugin = BenchPhone::withEverything().plugin();
    const RawPointerData data = fingersAt(static_cast<uint32_t>(state.range(0)), kMiddle);
    RawPointerData copy{};
    static std::array<Mutex, kLocks> locks;
    static const sp<Referenced> object = new Referenced();
    for ([[maybe_unused]] auto _ : state) {
        plugin.copyRawPointerData(&data, &copy);
        for (Mutex& lock : locks) {
            const Mutex::Autolock held(lock);
            benchmark::ClobberMemory();
        }
        for (size_t i = 0; i < kReferences; ++i) {
            const sp<Referenced> reference = object;
            benchmark::DoNotOptimize(reference.get());
        }
        benchmark::DoNotOptimize(&copy);
    }
}

/// Frames of one touch sequence, in which the fingers rest where they landed. None of them loses a finger, so that all
/// are alike.
void frames(benchmark::State& state, BenchPhone& phone, int32_t y) {
    RawPointerData data = fingersAt(static_cast<uint32_t>(state.range(0)), y);
    BitSet32 ids = data.touchingIdBits;
    const BitSet32 all = ids;
    for ([[maybe_unused]] auto _ : state) phone.frame(data, ids);
    if (!(ids == all)) state.SkipWithError("a finger was held back");
    phone.lift();
}

void frameAll(benchmark::State& state) { frames(state, BenchPhone::withEverything(), kMiddle); }
void frameNear(benchmark::State& state) { frames(state, BenchPhone::withEverything(), kNearSensor); }
void frameAllRecorded(benchmark::State& state) {
    const Listening listening;
    frames(state, BenchPhone::withEverything(), kMiddle);
}
void frameNearRecorded(benchmark::State& state) {
    const Listening listening;
    frames(state, BenchPhone::withEverything(), kNearSensor);
}
void frameOff(benchmark::State& state) { frames(state, BenchPhone::withNothing(), kMiddle); }

/// A tap on the sensor with no finger on the panel: both are dispatched.
void key(benchmark::State& state) {
    BenchPhone& phone = BenchPhone::withEverything();
    int32_t consumed = 0;
    for ([[maybe_unused]] auto _ : state) {
        consumed += phone.key(601, true);
        consumed += phone.key(601, false);
    }
    if (consumed != 0) state.SkipWithError("the key was consumed");
}

/// A window list of a phone in use: the navigation bar, and windows that the filters let pass.
void windows(benchmark::State& state) {
    BenchPhone& phone = BenchPhone::withEverything();
    std::vector<sp<android::InputWindowHandle>> list;
    for (int64_t i = 0; i < state.range(0); ++i) {
        sp<android::InputWindowHandle> window = new android::InputWindowHandle();
        window->token = &list;
        window->visible = true;
        window->name = i == 0 ? "Window{1f3a0c2 u0 NavigationBar}"
                              : "Window{" + std::to_string(4'000'000 + i) + " u0 com.example.app/com.example.app.Main}";
        window->layoutParamsType = i == 0 ? android::InputWindowHandle::kTypeNavigationBar : 1;
        window->frameTop = i == 0 ? 2340 : 0;
        list.push_back(window);
    }
    const sp<android::InputWindowHandle> focused = list.back();
    for ([[maybe_unused]] auto _ : state) phone.plugin().processInputWindow(list, focused, false);
}

BENCHMARK(floorOf)->Name("floor")->Arg(1)->Arg(2)->Arg(5)->Arg(10);
BENCHMARK(frameAll)->Name("frame_all")->Arg(1)->Arg(2)->Arg(5)->Arg(10);
BENCHMARK(frameNear)->Name("frame_near")->Arg(1)->Arg(2)->Arg(5)->Arg(10);
BENCHMARK(frameAllRecorded)->Name("frame_all_recorded")->Arg(1)->Arg(2)->Arg(5)->Arg(10);
BENCHMARK(frameNearRecorded)->Name("frame_near_recorded")->Arg(1)->Arg(2)->Arg(5)->Arg(10);
BENCHMARK(frameOff)->Name("frame_off")->Arg(1)->Arg(2)->Arg(5)->Arg(10);
BENCHMARK(key)->Name("key");
BENCHMARK(windows)->Name("windows")->Arg(1)->Arg(10)->Arg(40);

}  // namespace
}  // namespace bench
