#pragma once

#include <utils/Mutex.h>
#include <utils/RefBase.h>
#include <utils/String8.h>
#include <utils/Vector.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "aft/frontfp/AftAreaConfig.h"
#include "aft/frontfp/FingerPrintEventState.h"
#include "aft/frontfp/IdentifyFPState.h"
#include "aft/frontfp/NearbyFPPoints.h"
#include "aft/host/AftArea.h"
#include "aft/host/Decision.h"
#include "aft/host/InputMapper.h"
#include "aft/host/InputWindowHandle.h"
#include "aft/host/RawPointerData.h"

namespace android {

/// The filter of phones whose fingerprint sensor lies under the bottom of the touch panel. It is fed raw frames, the
/// sensor's keys, window lists and the surface's geometry.
///
/// Frames: a finger inside the filter area is held back while the sensor has just reported a finger, or enrols or
/// identifies one; it comes back where it landed once it moves up like a gesture or leaves the area. When the touch
/// turns out to be what the sensor has identified, or a swipe over the sensor, the whole gesture is cancelled. A finger
/// that came from outside the area is never held back.
///
/// Keys: a key of the sensor that a finger on the panel explains is consumed, or held back until that finger shows what
/// it is; the sensor's notifications are always consumed.
///
/// Abnormal touches: a pointer that the touch driver flags cancels the gesture, where such touches are costly. This is
/// switched on its own, and works without a filter area.
///
/// It never adds a pointer, never moves one elsewhere than to where it landed, and never touches a key of another
/// device.
///
/// A frame that the touch filter has cancelled and emptied is a lift-off to the abnormal-touch pass after it, which
/// then forgets the cancel: with both on, every further frame of that gesture may cancel again while the cause lasts.
/// That is a property of the chain.
///
/// Threads: frames and keys come on one thread; window lists and surfaces may come on others at any time. What the
/// latter write is under mLock; a frame or a key copies the surface out in one piece and asks for the focused window
/// where a decision needs it. Two surfaces configured at once may leave the size of one and the areas of the other.
class ZqFrontFPAftProcessor : public virtual RefBase {
  public:
    ZqFrontFPAftProcessor();
    ~ZqFrontFPAftProcessor() override;

    /// @return 1: consume the key; 0: dispatch it
    virtual int processKey(InputMapper* mapper, int64_t when, int32_t keyCode, int32_t scanCode, bool down,
                           int32_t metaState, uint32_t policyFlags);
    /// Filters one frame in place; `keys` gains a held-back key's pair when it is sent again. `mapper` may be null.
    virtual void processRawTouches(InputMapper* mapper, int64_t when, RawPointerData& data, BitSet32& idBits,
                                   Vector<void*>& keys);
    /// Follows the navigation bar through the window list.
    virtual void processInputWindow(const std::vector<sp<InputWindowHandle>>& windows);
    /// Places the filter area on the surface; raw panel units, orientation in quarter turns. An area that does not fit
    /// switches the filter off for the life of the process.
    virtual void configureSurface(int width, int height, int orientation);
    virtual void processInputWindowForAbt(const sp<InputWindowHandle>& focusedWindow, bool keyguardShowing);
    /// Cancels the gesture when a pointer of `idBits` is flagged; removes nothing. `mapper` may be null.
    virtual void processRawTouchesForAbt(InputMapper* mapper, int64_t when, RawPointerData& data, BitSet32& idBits);

    /// Whether the filter, or its abnormal-touch cancellation, runs. The first question reads the system properties.
    static bool enabled();
    static bool enabledAbt();
    /// The single instance, created by the first call; lives until the library is unloaded.
    static sp<ZqFrontFPAftProcessor> getInstance();
    /// Whether `keyCode` is one of the sensor's notifications, 516 to 519.
    static bool internalKey(int32_t keyCode);

    // Of a phone without a filter area.

    /// @return 1: consume the key, a notification of the sensor; 0: dispatch it
    static int keyWhileOff(InputMapper* mapper, int64_t when, int32_t keyCode);
    /// Records that the pointers pass.
    static void recordOff(InputMapper* mapper, int64_t when, const RawPointerData& data, BitSet32 idBits);

  protected:
    /// What a frame or a key has to know of the surface and of what is shown on it, copied out in one piece.
    struct Surface {
        AftArea filterArea;
        AftArea centralArea;
        bool landscape;
        bool preferNavigationBar;
    };

    /// What holds for a whole frame.
    struct FrameConditions {
        FrameConditions(const DecisionRecorder& of, int64_t at) : recorder(of), when(at), measured(of.listening()) {}

        const DecisionRecorder& recorder;
        int64_t when;           ///< ns
        Measurements measured;  ///< what was compared for the doubts below
        bool identifying;
        bool preferNavigationBar;
        bool fpRecently;
        bool enrolling;
        Surface surface;
    };

    /// What is done with one pointer, and the rule that says so.
    enum class Action : uint8_t { Outside, NavigationBar, WideRange, StillRestrained, Restrain, LetThrough };
    struct Verdict {
        Action action;
        Rule rule;
    };

    /// What becomes of a key-down that is not held back, and the rule that says so.
    struct KeyVerdict {
        bool consumes;
        Rule rule;
    };

    /// A pointer as it was when it was first held back.
    struct RestrainedPoint {
        int32_t x = 0;
        int32_t y = 0;
        int32_t axis0 = 0;
        uint32_t extraData = 0;
        int64_t timeMs = 0;  ///< 0 once it has served a compensation
    };

    static void parseConfig(const char* value);
    static void intializeConfig();

    // Keys.
    static int dispatched(Decision& decision, Rule rule, bool logged = false);
    static int consumed(Decision& decision, Rule rule, bool logged = false);
    int fingerprintEventUp(int32_t keyCode, Decision& decision);
    int fingerprintEventDown(InputMapper* mapper, int64_t when, int32_t keyCode, int32_t scanCode, int32_t metaState,
                             uint32_t policyFlags, Decision& decision);
    int notification(int32_t keyCode, bool down, int64_t when, Decision& decision);
    Rule fingerDownOnSensor(int64_t when, Measurements& measured);
    bool identifyStarted(int64_t when);
    void identifyFinished(int64_t when);
    bool enrollStarted(int64_t when);
    KeyVerdict filterFingerPrint(int32_t keyCode, int64_t when, Measurements& measured);
    bool touchingCentralArea(Measurements& measured);
    bool fingerPrintDownRecently(int64_t when, Measurements& measured) const;
    bool enrollFingerPrintRecently(int64_t when, Measurements& measured) const;
    bool swipeOnFPRecently(int64_t when, Measurements& measured) const;

    // Frames.
    bool touchingEnd(const RawPointerData& data, int64_t when);
    bool allFar(const RawPointerData& data, BitSet32 idBits, const FrameConditions& now);
    FrameConditions gatherConditions(const DecisionRecorder& recorder, int64_t when);
    bool preferTouchNavigationBar(const Surface& surface, int64_t when);
    bool touchOnEdge(const RawPointerData::Pointer& p) const;
    void secondFingerDown(int64_t when, Vector<void*>& keys);
    bool causedBySensor(const DecisionRecorder& recorder, int64_t when);
    void onlyFingerLandedInside(int64_t when);
    bool edgeCounts(const RawPointerData::Pointer& p, const FrameConditions& now) const;
    // The decision is a Decision, or an UnrecordedDecision where nobody listens.
    template <typename PointerDecision>
    BitSet32 judgeAll(RawPointerData& data, BitSet32 idBits, bool firstSingle, const FrameConditions& now);
    std::optional<Rule> restrainCause(const RawPointerData::Pointer& p, const FrameConditions& now,
                                      auto& decision) const;
    Verdict judge(uint32_t id, const RawPointerData::Pointer& p, const FrameConditions& now, auto& decision) const;
    bool apply(Verdict verdict, uint32_t id, RawPointerData::Pointer& p, const FrameConditions& now, auto& decision);
    bool reportFirst(uint32_t id);
    bool compensatePointIfNeed(RawPointerData::Pointer& p, int64_t when, bool force, auto& decision);

    // Windows and surface.
    static bool isNavigationBar(const InputWindowHandle& window);
    bool barIsNextToSensor(const InputWindowHandle& bar) const;
    Surface surface();
    const RawPointerData& lastFrame() const;

    // Abnormal touches.
    bool touchAbnormal(const RawPointerData::Pointer& p) const;
    bool touchStylusDirty(const RawPointerData::Pointer& p) const;
    template <typename PointerDecision>
    void cancelIfFlagged(InputMapper& mapper, const DecisionRecorder& recorder, int64_t when,
                         const RawPointerData& data, BitSet32 idBits);
    bool isFilteredWindowForeground(auto& decision);
    bool cancelsGesture(const RawPointerData::Pointer& p, auto& decision);

    static Mutex sFrontFPLock;  ///< guards sInstance and sAftConfig; held for short steps alone
    static sp<ZqFrontFPAftProcessor> sInstance;
    static AftAreaConfig sAftConfig;
    static const std::regex sNavigationBarPattern;

    Mutex mLock;  ///< guards the members marked (L)
    int64_t mFingerDownTime = 0;
    int64_t mFPEventTime = 0;
    int32_t mFPEventKeyCode = 0;  ///< of the key that set mFPEventTime, for records
    int64_t mEnrollTime = 0;
    int32_t mSurfaceWidth = 0;        ///< (L)
    int32_t mSurfaceHeight = 0;       ///< (L)
    int32_t mSurfaceOrientation = 0;  ///< (L)
    AftArea mFilterArea;              ///< (L)
    AftArea mCentralArea;             ///< (L) the surface less a border
    bool mTouching = false;           ///< a touch sequence is in progress
    bool mLandscape = false;          ///< (L)
    bool mTouchCanceled = false;      ///< the sequence in progress has been cancelled
    uint32_t mTouchSeq = 1;           ///< number of the current or next touch sequence, never 0
    String8 mTouchSeqDesc;
    bool mPreferNavigationBar = false;  ///< (L)
    /// Codes whose key-down was consumed and whose key-up is still to come, once for each key-down.
    Vector<int> mFilteredKeys;
    BitSet32 mRestrainedIdBits{};  ///< held back now
    std::array<RestrainedPoint, RawPointerData::kMaxIds> mRestrainedPoints;
    BitSet32 mReportedIdBits{};   ///< whose current decision has been logged
    BitSet32 mWideRangeIdBits{};  ///< seen outside the filter area in this sequence
    FingerPrintEventState mFPEventState;
    IdentifyFPState mIdentifyState;
    NearbyFPPoints mNearbyPoints;
    std::unique_ptr<RawPointerData> mLastRawPointerData;  ///< the latest frame as it came in; null: no memory for it
    sp<InputWindowHandle> mFocusedWindow;                 ///< (L)
    bool mKeyguardShowing = false;                        ///< (L)
    bool mFilterAllWindow = false;                        ///< set once, by the constructor
};

}  // namespace android
