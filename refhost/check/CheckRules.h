#pragma once

#include <string_view>

namespace refhost {

struct CheckRule {
    std::string_view name;
    std::string_view meaning;  ///< of the pointer rules: where it is broken; of all others: what holds
};

/// Every rule that a check applies. FrameRules, KeyRules, CancelRules, RecordRules and PointerLife apply those whose
/// names begin with "frame", "key", "cancel" and "report", "record", "pointer" and "gesture". docs/check.md has the
/// same texts.
inline constexpr CheckRule kCheckRules[] = {
    {"frame-adds", "no id and no record comes out that did not go in, and the hovering ids stay"},
    {"frame-order", "records keep their order, and all that no filter may touch of them"},
    {"frame-index", "every id of both sets has one record, to which its index leads"},
    {"frame-sets", "a record leaves with its id, and no other id leaves"},
    {"frame-altered",
     "a record has the place, pressure and flags with which it came, or those with which that finger came "
     "at most 1 s ago, since when it has been removed from every frame"},
    {"key-answer",
     "keys of other devices are dispatched, the sensor's notifications consumed, and a key-up shares the "
     "outcome of its key-down; with the filter off, notifications of any device are consumed, and no "
     "others"},
    {"key-held", "one key is held back at a time, and it is consumed"},
    {"key-sent",
     "a key that is held back is sent once, as a down and up pair of its own codes: with the frame in "
     "which the gesture ends or has a second finger, from 1 ms after the key on; only a finger that is "
     "restored drops it, and the next gesture"},
    {"cancel-told",
     "a device's frame cancels as often as filters say so in the log, at its own time; a frame of no "
     "device and all other calls never do"},
    {"cancel-again",
     "a filter cancels at most once a frame, and not again before it has seen all fingers lift; a frame "
     "that an earlier filter has emptied is a lift-off to it, too"},
    {"report", "the slide cover filter reports a cancel at most once, in a frame that comes out without a finger"},
    {"record-missing",
     "each pointer that leaves a frame, each cancel, each key, each key that is sent again and each "
     "report has a record"},
    {"record-frame",
     "a record of a pointer has the time of the frame, and the place and flags with which the pointer "
     "came, or with which it was restored; it removes no pointer that stays. A frame has no more records "
     "of cancels, keys and reports than the host has seen, and the record of a key has the key's time and "
     "result"},
    {"record-measure",
     "a measure holds where its value is in its range, and nowhere else; a time is that from its cause to "
     "the record; `x in the ...` and `y in the ...` are the pointer's; a cause that is a key is a "
     "key-down of the trace"},
    {"record-rule",
     "the measures say what the rule needs (`RuleNeeds` in `aft/host/Rules.h`): all of them hold, some, "
     "none, or not all"},
    {"pointer-late", "a pointer comes out later than its finger has landed"},
    {"pointer-lost", "it never comes out, and some frame has no record of its removal"},
    {"pointer-torn",
     "it leaves while its finger is down, and its gesture has not been cancelled: apps see a lift that "
     "nobody made"},
    {"pointer-again", "it comes out again after that"},
    {"pointer-after-cancel",
     "it was out as its gesture was cancelled, and is out again before all of the panel's fingers are up"},
    {"gesture-torn",
     "all pointers of a panel leave while fingers are down, and some come out again, none of them "
     "restored"},
};

}  // namespace refhost
