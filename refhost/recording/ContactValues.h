#pragma once

#include <cstdint>
#include <optional>

#include "refhost/recording/TouchFrame.h"

namespace refhost {

/// What the events of one contact have said of it so far.
class ContactValues {
  public:
    /// Takes an ABS_MT_* event that describes a contact. Slot, tracking id and unknown codes change nothing.
    void set(uint16_t code, int32_t value);

    bool positioned() const { return mX && mY; }
    /// Pressure was reported and is not above 0: a slot hovers then, a packet's contact has lifted.
    bool unpressed() const { return mPressure && *mPressure <= 0; }
    bool withoutArea() const { return mTouchMajor && *mTouchMajor <= 0; }
    bool distant() const { return mDistance > 0; }

    /// Squared distance to another contact; both are positioned.
    double squaredDistance(const ContactValues& other) const;

    /// @param penInRange a pen key of the device is down: tells the tool of contacts that say nothing of theirs
    /// @return           all but the id and `hovering`; only for a positioned contact
    Contact toContact(bool penInRange) const;

  private:
    std::optional<int32_t> mX, mY, mPressure, mTouchMajor, mTouchMinor, mToolMajor, mToolMinor, mToolType;
    int32_t mOrientation = 0;
    int32_t mDistance = 0;
};

/// A contact as one of the two protocols tells it to the maker of frames.
struct LiveContact {
    uint64_t finger = 0;  ///< from 1, one number for each landing: stays the same until the finger lifts
    ContactValues values;
    bool hovering = false;
};

}  // namespace refhost
