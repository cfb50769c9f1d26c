#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "refhost/recording/ContactValues.h"

namespace refhost {

/// Multi-touch protocol B: a slot a contact, which keeps its values until others are reported; ABS_MT_SLOT selects the
/// slot that the following events speak of, ABS_MT_TRACKING_ID opens and closes its contact.
///
/// A recording may begin in the middle: slot 0 is selected until something else is said, and a slot that reports a
/// position without having been opened is in contact.
class SlotContacts {
  public:
    /// Takes an EV_ABS event with an ABS_MT_* code.
    /// @return false if it speaks of a slot outside 0..255, which changes nothing
    bool take(uint16_t code, int32_t value);

    /// BTN_TOUCH went up: contacts that no tracking id has opened are over, for no tracking id may close them.
    void touchEnded();

    /// Events were lost: no slot is known to be in contact. A slot that was comes back, as a new finger, once it
    /// reports anything; its values are kept, since the kernel reports only what changes.
    void forgetContacts();

    /// Takes only what holds also while events are being lost: the selection of a slot.
    void followSlot(uint16_t code, int32_t value);

    /// The contacts of this moment by ascending slot, also those whose position is not known. Begins a new packet.
    std::vector<LiveContact> endPacket();

  private:
    struct Slot {
        ContactValues values;
        uint64_t finger = 0;                ///< 0: no contact
        std::optional<int32_t> trackingId;  ///< what opened the contact, if anything did
        bool forgotten = false;             ///< was in contact when events were lost
        bool closedInThisPacket = false;    ///< a position behind the closing tracking id does not open it again
    };

    void setTrackingId(Slot& slot, int32_t id);
    void land(Slot& slot, std::optional<int32_t> trackingId);
    static void lift(Slot& slot);

    std::vector<Slot> mSlots;  ///< as many as have been spoken of
    std::optional<size_t> mSelected = 0;
    uint64_t mLandings = 0;
};

}  // namespace refhost
