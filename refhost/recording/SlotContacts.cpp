#include "refhost/recording/SlotContacts.h"

#include <linux/input-event-codes.h>

namespace refhost {

namespace {

/// Far beyond any panel; keeps a mistyped slot number from taking memory for all slots below it.
constexpr int32_t kSlotLimit = 256;

}  // namespace

void SlotContacts::followSlot(uint16_t code, int32_t value) {
    if (code != ABS_MT_SLOT) return;
    mSelected.reset();
    if (value >= 0 && value < kSlotLimit) mSelected = static_cast<size_t>(value);
}

bool SlotContacts::take(uint16_t code, int32_t value) {
    followSlot(code, value);
    if (!mSelected) return false;
    if (code == ABS_MT_SLOT) return true;
    if (*mSelected >= mSlots.size()) mSlots.resize(*mSelected + 1);
    Slot& slot = mSlots[*mSelected];

    if (code == ABS_MT_TRACKING_ID) {
        setTrackingId(slot, value);
        return true;
    }
    slot.values.set(code, value);
    const bool position = code == ABS_MT_POSITION_X || code == ABS_MT_POSITION_Y;
    const bool inContact = (position && !slot.closedInThisPacket) || slot.forgotten;
    if (inContact && slot.finger == 0) land(slot, std::nullopt);
    return true;
}

void SlotContacts::setTrackingId(Slot& slot, int32_t id) {
    if (id < 0) {
        lift(slot);
        slot.closedInThisPacket = true;
    } else if (slot.finger == 0 || slot.trackingId != id) {
        land(slot, id);
    }
}

void SlotContacts::land(Slot& slot, std::optional<int32_t> trackingId) {
    slot.finger = ++mLandings;
    slot.trackingId = trackingId;
    slot.forgotten = false;
}

void SlotContacts::lift(Slot& slot) {
    slot.finger = 0;
    slot.trackingId.reset();
    slot.forgotten = false;
}

void SlotContacts::touchEnded() {
    for (Slot& slot : mSlots) {
        if (!slot.trackingId) lift(slot);
    }
}

void SlotContacts::forgetContacts() {
    for (Slot& slot : mSlots) {
        const bool wasInContact = slot.finger != 0 || slot.forgotten;
        lift(slot);
        slot.forgotten = wasInContact;
        slot.closedInThisPacket = false;
    }
}

std::vector<LiveContact> SlotContacts::endPacket() {
    std::vector<LiveContact> contacts;
    for (Slot& slot : mSlots) {
        slot.closedInThisPacket = false;
        if (slot.finger == 0) continue;
        contacts.push_back({slot.finger, slot.values, slot.values.unpressed() || slot.values.distant()});
    }
    return contacts;
}

}  // namespace refhost
