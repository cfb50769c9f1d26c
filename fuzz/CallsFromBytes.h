#pragma once

#include <cstdint>
#include <deque>
#include <map>

#include "fuzz/Bytes.h"
#include "refhost/trace/Trace.h"

namespace fuzz {

/// A host's calls out of a fuzzer's input. Most are what a phone sees: a hand that puts fingers down near the sensor,
/// in the notch band or elsewhere, moves and lifts them, while the sensor's keys come in between and the device turns,
/// slides or folds; so that few bytes lead far. The others are what no host should send.
class CallsFromBytes : public refhost::TraceSource {
  public:
    CallsFromBytes(const uint8_t* data, size_t size);

    const refhost::TraceHeader& header() const override { return mHeader; }
    bool next(refhost::TraceLine& line) override;
    std::optional<double> progress() override { return std::nullopt; }

  private:
    void makeHeader();
    void passTime();
    refhost::TraceEvent event();
    refhost::DeviceRef device();
    refhost::ProcessRawTouches fingersMove();
    refhost::ProcessRawTouches frame();
    refhost::ProcessRawTouches brokenFrame();
    refhost::ProcessKey key();
    refhost::ConfigureSurface surface();
    refhost::ConfigureSurface brokenSurface();
    refhost::ProcessInputWindow windows();
    refhost::SensorEvent coverMoves();
    refhost::SensorEvent hingeTurns();
    refhost::SensorEvent anySample();
    refhost::SensorService service();

    Bytes mBytes;
    refhost::TraceHeader mHeader;
    std::deque<refhost::TraceEvent> mNext;                          ///< what comes before the rest of the bytes is read
    std::map<uint32_t, android::RawPointerData::Pointer> mFingers;  ///< on the glass
    uint32_t mLine = 1;
    int64_t mNow = 60'000'000'000;  ///< ns, of events and of the clock
};

}  // namespace fuzz
