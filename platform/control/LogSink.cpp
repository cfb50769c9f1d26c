#include "platform/control/LogSink.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "android/log.h"

namespace aftplatform {
namespace {

using Sink = std::function<void(const LogLine&)>;

constexpr size_t kCommonLine = 512;  // bytes; a longer text is formatted twice, the second time on the heap

constinit std::atomic<int> minimumPriority{ANDROID_LOG_VERBOSE};

void writeToStderr(const LogLine& line) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    std::array<char, sizeof "MM-DD HH:MM:SS"> time{};
    std::strftime(time.data(), time.size(), "%m-%d %H:%M:%S", &local);
    std::fprintf(stderr, "%s.%03d %5d %5d %c %.*s: %.*s\n", time.data(), static_cast<int>(now.tv_nsec / 1'000'000),
                 static_cast<int>(getpid()), static_cast<int>(gettid()), priorityName(line.priority).front(),
                 static_cast<int>(line.tag.size()), line.tag.data(), static_cast<int>(line.text.size()),
                 line.text.data());
}

/// The sink in use. Recursive, since a sink may log and may change the sink.
class Outlet {
  public:
    void use(Sink sink) {
        auto next = std::make_shared<const Sink>(sink ? std::move(sink) : Sink(writeToStderr));
        std::lock_guard lock(mLock);
        mSink.swap(next);
        // The old sink goes after the lock: `next` is the older variable.
    }

    void pass(const LogLine& line) {
        std::shared_ptr<const Sink> sink;  // outlives the call and the lock, even if the call changes the sink
        std::lock_guard lock(mLock);
        sink = mSink;
        (*sink)(line);
    }

  private:
    std::recursive_mutex mLock;
    std::shared_ptr<const Sink> mSink = std::make_shared<const Sink>(writeToStderr);
};

// Never destroyed: other libraries log while they are being unloaded.
Outlet& outlet() {
    static Outlet& instance = *new Outlet;
    return instance;
}

// noexcept: the callers are C functions, which nothing may be thrown through.
int print(int priority, const char* tag, const char* fmt, va_list args) noexcept {
    va_list again;
    va_copy(again, args);
    std::array<char, kCommonLine> common;
    std::string longer;
    const int result = std::vsnprintf(common.data(), common.size(), fmt, args);
    const size_t length = static_cast<size_t>(result < 0 ? 0 : result);
    std::string_view text(common.data(), length);
    if (length >= common.size()) {
        longer.resize(length);
        std::vsnprintf(longer.data(), length + 1, fmt, again);
        text = longer;
    }
    va_end(again);
    if (result >= 0) outlet().pass({priority, tag ? tag : "", text});
    return result;
}

}  // namespace

void setLogSink(Sink sink) { outlet().use(std::move(sink)); }

void setMinimumLogPriority(int priority) { minimumPriority.store(priority, std::memory_order_relaxed); }

std::string_view priorityName(int priority) {
    switch (priority) {
        case ANDROID_LOG_VERBOSE: return "VERBOSE";
        case ANDROID_LOG_DEBUG: return "DEBUG";
        case ANDROID_LOG_INFO: return "INFO";
        case ANDROID_LOG_WARN: return "WARN";
        case ANDROID_LOG_ERROR: return "ERROR";
        case ANDROID_LOG_FATAL: return "FATAL";
        default: return "UNKNOWN";
    }
}

}  // namespace aftplatform

int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
    if (prio < aftplatform::minimumPriority.load(std::memory_order_relaxed)) return 0;
    va_list args;
    va_start(args, fmt);
    const int result = aftplatform::print(prio, tag, fmt, args);
    va_end(args);
    return result;
}
