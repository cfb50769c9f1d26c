#pragma once

#include <array>
#include <cstdint>
#include <limits>

#include "aft/host/AftArea.h"
#include "aft/host/DecisionRecord.h"
#include "aft/host/InputMapper.h"
#include "aft/host/RawPointerData.h"
#include "aft/host/Rules.h"

// How a filter compares and decides so that a host can see why: the comparison that decides is the one that is
// recorded. Where nobody listens, each comes down to the plain comparison and a test of one flag.

namespace android {

/// What a comparison is about. Literals.
struct Quantity {
    const char* name;               ///< "moved up"
    const char* unit = "";          ///< "ms"; "" for raw panel units, flags and counts
    const char* setting = nullptr;  ///< the system property that sets the limit; null: it is fixed
};

/// The host's listener, or null.
inline const DecisionListener* decisionListener() {
    if (&aft_decision_listener_1 == nullptr) return nullptr;
    return aft_decision_listener_1.load(std::memory_order_acquire);
}

/// Comparisons of values with limits. Each is kept by the `Keeper`, which derives from this: the comparison that
/// decides is the one that is kept.
template <typename Keeper>
class Comparing {
  public:
    bool atLeast(Quantity what, int64_t value, int64_t least, MeasurementCause from = {}) {
        return keeper().kept(what, value, least, kOpen, value >= least, from);
    }
    bool atMost(Quantity what, int64_t value, int64_t most, MeasurementCause from = {}) {
        return keeper().kept(what, value, -kOpen, most, value <= most, from);
    }
    bool below(Quantity what, int64_t value, int64_t limit, MeasurementCause from = {}) {
        return keeper().kept(what, value, -kOpen, limit - 1, value < limit, from);
    }
    /// Both ends are inside.
    bool within(Quantity what, int64_t value, int64_t least, int64_t most, MeasurementCause from = {}) {
        return keeper().kept(what, value, least, most, least <= value && value <= most, from);
    }
    bool flag(Quantity what, bool isSet) { return keeper().kept(what, isSet ? 1 : 0, 1, 1, isSet, {}); }
    /// Whether the point is inside, the four edges included: two measurements.
    bool inside(Quantity alongX, Quantity alongY, const AftArea& area, int32_t x, int32_t y) {
        const bool isAcross = within(alongX, x, area.left, area.right);
        const bool isDown = within(alongY, y, area.top, area.bottom);
        return isAcross && isDown;
    }

  protected:
    static constexpr double kOpen = std::numeric_limits<double>::infinity();

  private:
    Keeper& keeper() { return static_cast<Keeper&>(*this); }
};

/// Comparisons that are kept where somebody listens. On the stack of the thread that decides; never allocates.
class Measurements : public Comparing<Measurements> {
  public:
    static constexpr uint32_t kMost = 12;  ///< further ones are not kept

    explicit Measurements(bool areKept) : mKept(areKept) {}
    /// For a comparison that nobody has to know of. Shared: keeps nothing.
    static Measurements& unheard();

    /// The measurement's range begins at the float after `limit`. Not a number is above nothing.
    bool above(Quantity what, float value, float limit, MeasurementCause from = {}) {
        const bool holds = value > limit;
        if (mKept) [[unlikely]]
            keepAbove(what, value, limit, holds, from);
        return holds;
    }
    /// The same as within(), of the time since an event. An event at time 0 has not happened: its measurement is kept
    /// only where it holds all the same, as one from the start of the clock.
    bool withinSince(Quantity what, int64_t value, int64_t least, int64_t most, MeasurementCause from) {
        const bool holds = least <= value && value <= most;
        if (mKept) [[unlikely]]
            keepSince(what, value, least, most, holds, from);
        return holds;
    }
    /// A value that is a fact, not a condition.
    void fact(Quantity what, double value, MeasurementCause from = {}) {
        if (mKept) [[unlikely]]
            keep(what, value, -kOpen, kOpen, true, from);
    }

    /// Keeps what others compared.
    void add(const Measurements& others) {
        if (mKept) [[unlikely]]
            addAll(others);
    }
    /// How many have been kept; forgetSince() goes back to that many.
    uint32_t count() const { return mKept ? mCount : 0; }
    void forgetSince(uint32_t count) {
        if (mKept) mCount = count;
    }
    bool areKept() const { return mKept; }

  protected:
    const Measurement* list() const { return mList.data(); }

  private:
    friend Comparing;

    constexpr Measurements() : mKept(false), mList{} {}

    template <typename Least, typename Most>
    bool kept(Quantity what, int64_t value, Least least, Most most, bool holds, MeasurementCause from) {
        if (mKept) [[unlikely]] {
            keep(what, static_cast<double>(value), static_cast<double>(least), static_cast<double>(most), holds, from);
        }
        return holds;
    }
    void keep(Quantity what, double value, double least, double most, bool holds, MeasurementCause from);
    void keepSince(Quantity what, int64_t value, int64_t least, int64_t most, bool holds, MeasurementCause from);
    void keepAbove(Quantity what, float value, float limit, bool holds, MeasurementCause from);
    void addAll(const Measurements& others);

    bool mKept;
    uint32_t mCount = 0;
    std::array<Measurement, kMost> mList;  ///< the first mCount are valid
};

inline Measurements& Measurements::unheard() {
    static constinit Measurements none;
    return none;
}

/// One filter's decisions about one frame, key or event.
class DecisionRecorder {
  public:
    /// @param filter the name of the filter, a literal
    /// @param mapper may be null
    /// @param when   ns, event time
    DecisionRecorder(const char* filter, const InputMapper* mapper, int64_t when) : mListener(decisionListener()) {
        if (mListener != nullptr) [[unlikely]]
            begin(filter, mapper, when);
    }
    /// Of an event that has no time of its own: the monotonic clock's.
    explicit DecisionRecorder(const char* filter, const InputMapper* mapper = nullptr) : mListener(decisionListener()) {
        if (mListener != nullptr) [[unlikely]]
            begin(filter, mapper, clockTime());
    }
    bool listening() const { return mListener != nullptr; }

  private:
    friend class Decision;

    static int64_t clockTime();
    void begin(const char* filter, const InputMapper* mapper, int64_t when);

    const DecisionListener* mListener;
    DecisionRecord mBlank;  ///< valid where somebody listens
};

/// One decision in the making: compares, then records its outcome. It is recorded where the decision falls, and once.
class Decision : public Measurements {
  public:
    /// About a gesture or a change of context.
    explicit Decision(const DecisionRecorder& recorder) : Measurements(recorder.listening()), mRecorder(recorder) {
        if (areKept()) [[unlikely]]
            mHasPointer = mHasKey = false;
    }
    /// About a pointer, as it is in the frame now.
    Decision(const DecisionRecorder& recorder, uint32_t id, const RawPointerData::Pointer& p) : Decision(recorder) {
        if (areKept()) [[unlikely]]
            about(id, p);
    }
    /// About a key.
    Decision(const DecisionRecorder& recorder, int32_t keyCode) : Decision(recorder) {
        if (areKept()) [[unlikely]]
            about(keyCode);
    }

    /// @param logged the last line that this thread has logged says the same
    void record(DecisionRecord::Outcome outcome, Rule rule, bool logged = false) {
        if (areKept()) [[unlikely]]
            deliver(outcome, rule, logged);
    }

  private:
    void about(uint32_t id, const RawPointerData::Pointer& p);
    void about(int32_t keyCode);
    void deliver(DecisionRecord::Outcome outcome, Rule rule, bool logged) const;

    const DecisionRecorder& mRecorder;
    // Valid where somebody listens; what is about a pointer or a key, where the decision is.
    bool mHasPointer;
    bool mHasKey;
    uint32_t mPointerId;
    int32_t mX;
    int32_t mY;
    uint32_t mExtraData;
    int32_t mKeyCode;
};

/// A decision that nobody hears of: the plain comparisons. A loop over pointers is compiled with this and with
/// Decision, and takes the one or the other for a whole frame.
class UnrecordedDecision : public Comparing<UnrecordedDecision> {
  public:
    UnrecordedDecision(const DecisionRecorder& /*recorder*/, uint32_t /*id*/, const RawPointerData::Pointer& /*p*/) {}

    void add(const Measurements& /*others*/) {}
    void record(DecisionRecord::Outcome /*outcome*/, Rule /*rule*/, bool /*logged*/ = false) {}

  private:
    friend Comparing;

    template <typename Least, typename Most>
    bool kept(Quantity /*what*/, int64_t /*value*/, Least /*least*/, Most /*most*/, bool holds,
              MeasurementCause /*from*/) {
        return holds;
    }
};

/// Records the same of every pointer of a set that has a record in the frame.
void recordEach(const DecisionRecorder& recorder, const RawPointerData& data, BitSet32 ids,
                DecisionRecord::Outcome outcome, Rule rule);

}  // namespace android
