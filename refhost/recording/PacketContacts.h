#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "refhost/recording/ContactValues.h"

namespace refhost {

/// Multi-touch protocol A: every packet lists all contacts anew, SYN_MT_REPORT behind each. The panel does not say
/// which is which, or says so with a tracking id; so a contact of this packet is the finger of the last one that
/// carries the same id, or like it none. Of several such the nearest is meant: panels exist that give every contact one
/// and the same id.
///
/// A contact lifts when it is not in the packet any more, or is there without pressure or area.
class PacketContacts {
  public:
    /// Takes an EV_ABS event with an ABS_MT_* code.
    void take(uint16_t code, int32_t value);

    /// SYN_MT_REPORT: the contact is complete. Behind nothing, it says that there is no contact.
    void endContact();

    /// BTN_TOUCH went up: unless the packet lists contacts, there are none left.
    void touchEnded() { mListed = true; }

    /// Events were lost: no contact is known, and what the packet has listed so far is void.
    void forgetContacts();

    /// The contacts of this packet in its order, also those whose position is not known; those of the last packet if
    /// this one spoke of no contact at all. Begins a new packet.
    /// @param leftOut is raised by the contacts that are more than a packet can hold
    std::vector<LiveContact> endPacket(uint32_t& leftOut);

  private:
    struct ListedContact {
        std::optional<int32_t> trackingId;
        LiveContact contact;
    };

    /// Gives every listed contact the finger of the last packet that it is, or a new one.
    void recogniseFingers();

    std::vector<ListedContact> mLast;
    std::vector<ListedContact> mListing;
    ListedContact mOpen;        ///< what was reported since the last SYN_MT_REPORT
    bool mOpenHasData = false;  ///< whether anything was
    bool mListed = false;       ///< the packet speaks of contacts, if only to say that there are none
    uint32_t mOverflow = 0;
    uint64_t mLandings = 0;
};

}  // namespace refhost
