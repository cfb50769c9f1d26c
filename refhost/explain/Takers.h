#pragma once

#include <array>
#include <cstdint>

#include "aft/host/RawPointerData.h"
#include "refhost/explain/HeldAtSensor.h"
#include "refhost/explain/MarkedWindows.h"
#include "refhost/explain/Phone.h"
#include "refhost/play/CallResult.h"
#include "refhost/play/CoverStory.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Who takes a finger out of frames.
enum class Taker : uint8_t {
    Nobody,  ///< no filter has a reason to
    Sensor,  ///< the front fingerprint filter holds it back
    SensorCancel,
    Cover,
    Notch,
    Fold,
};

/// Why fingers of a gesture that was cancelled come out again.
enum class Passing : uint8_t {
    Not,  ///< they should not
    SensorCancel,
    Abnormal,
    CoverSettled,
    CoverIdle,
    CoverForgot,  ///< a filter before it had emptied a frame, which is a lift-off to it
    FoldForgot,   ///< likewise, or the input has ended
};

/// Who has asked for a cancel: the front fingerprint filter for the sensor or for an abnormal touch, the slide cover's,
/// the fold angle's.
struct Cancellers {
    bool sensor = false;
    bool abnormal = false;
    bool cover = false;
    bool fold = false;
};

/// Finds for every finger that a frame loses the filter that has a reason to take it, in the filters' order: by what
/// they log, and where they log nothing, by where the finger is and what the filter has seen. Told from outside; each
/// filter sees the fingers of all panels as one hand. One thread.
class Takers {
  public:
    explicit Takers(const TraceHeader& header) : mPhone(header) {}

    /// Takes any line.
    void hear(const TraceLine& line, const CallResult& result);

    /// As they know it.
    const Phone& phone() const { return mPhone; }

    // Of the frame just heard.

    Taker of(uint32_t id) const { return mTakers[id]; }
    /// Where the front fingerprint filter has held it back, as that filter sees it.
    const HeldAtSensor::Landed& landed(uint32_t id) const { return mSensor.landed(id); }
    /// Why fingers of a gesture that the slide cover's filter has cancelled pass.
    bool coverSettled() const { return mCoverSettled; }
    bool coverIdle() const { return mCoverStory.idle(); }
    /// Whether the front fingerprint filter lets it be: it has been seen outside the filter area, or was put back.
    bool passesSensor(uint32_t id) const { return mSensor.passes(id); }
    /// Whether it is in a window in which fingers are wanted in the notch band, too.
    bool isInMarkedWindow(const DeviceRef& device, const android::RawPointerData::Pointer& finger) const {
        return mMarked.hold(device, finger);
    }
    bool restores(uint32_t id) const { return mRestored.hasBit(id); }
    const Cancellers& cancellers() const { return mCancellers; }
    /// Why a gesture that these have cancelled, in this frame or before, passes in it.
    Passing passing(const Cancellers& cancelledBy) const;

  private:
    void hearFrame(const ProcessRawTouches& call, const CallResult& result);
    void hearRestored(const ProcessRawTouches& call, const CallResult& result);
    void take(android::BitSet32 ids, Taker taker);
    void takeInNotch(const ProcessRawTouches& call, int32_t height);

    Phone mPhone;
    MarkedWindows mMarked;
    HeldAtSensor mSensor;
    CoverStory mCoverStory;
    int64_t mNow = 0;  ///< ns, the trace's clock
    Cancellers mCancellers;
    bool mCover = false;  ///< this filter has cancelled, and has not seen all fingers up since
    bool mCoverSettled = false;
    bool mFold = false;                ///< likewise
    android::BitSet32 mPassedNotch{};  ///< seen where the notch filter does not take them: never taken until all are up
    std::array<Taker, android::RawPointerData::kMaxIds> mTakers{};
    android::BitSet32 mRestored{};
    std::array<android::RawPointerData::Pointer, android::RawPointerData::kMaxIds> mLanded{};  ///< of these

    // As the filter sees the frame that looks at it now.
    android::BitSet32 mLost{};      ///< ids that did not come out and have no taker yet
    android::BitSet32 mTouching{};  ///< ids that the filters before have left
};

}  // namespace refhost
