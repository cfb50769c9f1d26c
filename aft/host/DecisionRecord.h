#pragma once

#include <atomic>
#include <cstdint>
#include <type_traits>

// What the plug-in reports to a host that listens: one record for each decision, made where the decision falls. Plain
// data; the texts are the library's own literals and live until it is unloaded.

namespace android {

/// The event that a measured time or distance counts from.
struct MeasurementCause {
    const char* event;  ///< "key", "landing", "cover state"; null: the measurement counts from no event
    int32_t keyCode;    ///< of the event "key"
    int64_t when;       ///< ns, to the millisecond, on the clock of the events
    int64_t until;      ///< ns, likewise: when a measured time ended; 0: with the record's own time
};

/// One value that a decision compared, with the range in which its condition holds. Both ends are inside.
struct Measurement {
    const char* name;        ///< what was measured: "moved up"
    const char* unit;        ///< "ms"; "" for raw panel units, flags and counts
    double value;            ///< a flag is 0 or 1
    double least;            ///< minus infinity: open
    double most;             ///< infinity: open
    bool holds;              ///< what the library's comparison said
    const char* setting;     ///< the system property that sets the range; null: the range is fixed
    MeasurementCause cause;  ///< what the value counts from
};

/// One decision of one filter.
struct DecisionRecord {
    enum class Outcome : uint8_t {
        // Of a pointer, by the filter that looked at it.
        OutOfScope,  ///< stays in the frame: it is not where this filter acts
        Passed,      ///< stays in the frame, although it is where this filter acts
        Removed,     ///< leaves the frame
        Restored,    ///< was removed before and is put back where it landed
        // Of a gesture.
        Cancelled,
        // Of a key.
        Dispatched,
        Consumed,
        HeldBack,   ///< consumed for now
        SentAgain,  ///< as a down and up pair
        Dropped,    ///< a held-back key is forgotten
        // Else.
        Reported,  ///< the host's policy got a report
        Noted,     ///< a change of context that later decisions depend on
        Sampled,   ///< a sample of a sensor that changed nothing
    };

    const char* filter;  ///< "front-fingerprint"
    const char* rule;    ///< a name of Rules.h
    Outcome outcome;     ///< what the rule led to
    bool logged;         ///< the last line of the log says the same in the filter's own words
    bool hasDevice;      ///< whether `deviceId` is valid: there was a mapper
    bool hasPointer;     ///< whether the record is about a pointer
    bool hasKey;         ///< whether the record is about a key
    int64_t when;        ///< ns: the time of the frame or key; else the monotonic clock
    int32_t deviceId;    ///< of the mapper
    uint32_t pointerId;  ///< 0..31
    int32_t x;           ///< of the pointer, raw panel units, as the filter found it in the frame
    int32_t y;           ///< likewise
    uint32_t extraData;  ///< flag word of the pointer, likewise
    int32_t keyCode;
    uint32_t measurementCount;
    const Measurement* measurements;  ///< valid during the call
};

static_assert(std::is_trivially_copyable_v<DecisionRecord> && std::is_standard_layout_v<DecisionRecord>);

/// How a host listens.
struct DecisionListener {
    /// Called on the thread that decides, possibly with locks of the filter held: it must not call the library, and
    /// must not throw. The record is valid during the call. Several threads may call at once.
    void (*onDecision)(const DecisionRecord& record, void* context);
    void* context;
};

}  // namespace android

/// The host's listener; null: nobody listens. The host defines this object and exports it; a host that does not know of
/// records leaves the import null. The listener must stay valid until a null has been stored and every call into the
/// library that began before has returned. A change of the records' layout changes the number in the name.
extern "C" __attribute__((weak, visibility("default"))) std::atomic<const android::DecisionListener*>
    aft_decision_listener_1;
