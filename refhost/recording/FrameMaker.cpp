#include "refhost/recording/FrameMaker.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <utility>

namespace refhost {

namespace {

bool isMultiTouchAxis(uint16_t code) { return code >= ABS_MT_SLOT && code <= ABS_MT_TOOL_Y; }

bool isToolKey(uint16_t code) { return code >= BTN_DIGI && code < BTN_WHEEL; }

bool isPenKey(uint16_t code) { return code >= BTN_TOOL_PEN && code <= BTN_TOOL_AIRBRUSH; }

/// Axes that touch panels send beside the multi-touch ones, for programs that know of one finger only.
bool isSingleTouchAxis(uint16_t code) {
    switch (code) {
        case ABS_X:
        case ABS_Y:
        case ABS_PRESSURE:
        case ABS_DISTANCE:
        case ABS_TILT_X:
        case ABS_TILT_Y:
        case ABS_TOOL_WIDTH: return true;
        default: return false;
    }
}

enum class Sender { TouchPanel, Anyone, AnotherDevice };

/// Recordings of several devices without a prefix mix the packets of all of them.
Sender senderOf(const KernelEvent& event) {
    switch (event.type) {
        case EV_SYN: return event.code == SYN_MT_REPORT ? Sender::TouchPanel : Sender::Anyone;
        case EV_MSC: return Sender::Anyone;  // timestamps of panels, scan codes of keyboards
        case EV_ABS:
            if (isMultiTouchAxis(event.code) || isSingleTouchAxis(event.code)) return Sender::TouchPanel;
            return Sender::AnotherDevice;
        case EV_KEY: return isToolKey(event.code) ? Sender::TouchPanel : Sender::AnotherDevice;
        default: return Sender::AnotherDevice;
    }
}

bool isReport(const KernelEvent& event) { return event.type == EV_SYN && event.code == SYN_REPORT; }

}  // namespace

TouchProtocol touchProtocolOf(const Recording& recording, uint32_t device) {
    const bool packets =
        std::any_of(recording.events.begin(), recording.events.end(), [device](const KernelEvent& event) {
            return event.device == device && event.type == EV_SYN && event.code == SYN_MT_REPORT;
        });
    return packets ? TouchProtocol::Packets : TouchProtocol::Slots;
}

std::optional<TouchFrame> FrameMaker::feed(const KernelEvent& event) {
    if (event.type == EV_SYN && event.code == SYN_DROPPED) {
        // What the packet has brought so far is lost with the rest of it.
        mCounts.lostEvents += std::exchange(mEventsInPacket, 0);
        if (!std::exchange(mLosing, true)) ++mCounts.resyncs;
        return std::nullopt;
    }
    if (isReport(event)) return mLosing ? resume(event) : endPacket(event);

    if (mLosing) {
        ++mCounts.lostEvents;
        // The kernel says only once which slot it goes on with; a service asks for it after a loss.
        if (event.type == EV_ABS) mSlots.followSlot(event.code, event.value);
        return std::nullopt;
    }
    ++mEventsInPacket;
    const Sender sender = senderOf(event);
    mPacketIsTouch |= sender == Sender::TouchPanel;
    mPacketIsForeign |= sender == Sender::AnotherDevice;
    takeTouch(event);
    return std::nullopt;
}

void FrameMaker::takeTouch(const KernelEvent& event) {
    if (event.type == EV_ABS && isMultiTouchAxis(event.code)) {
        if (mProtocol == TouchProtocol::Packets) {
            mPackets.take(event.code, event.value);
        } else if (!mSlots.take(event.code, event.value)) {
            ++mCounts.badSlotEvents;
        }
    } else if (event.type == EV_SYN && event.code == SYN_MT_REPORT) {
        mPackets.endContact();
    } else if (event.type == EV_KEY) {
        takeKey(event);
    }
}

void FrameMaker::takeKey(const KernelEvent& event) {
    if (event.code == BTN_TOUCH && event.value == 0) {
        mSlots.touchEnded();
        mPackets.touchEnded();
    }
    if (!isPenKey(event.code)) return;
    const uint64_t bit = uint64_t{1} << (event.code - BTN_DIGI);
    mPenKeysDown = event.value != 0 ? mPenKeysDown | bit : mPenKeysDown & ~bit;
}

TouchFrame FrameMaker::resume(const KernelEvent& report) {
    mLosing = false;
    mPacketIsTouch = mPacketIsForeign = false;
    mSlots.forgetContacts();
    mPackets.forgetContacts();
    mFingerOfId.fill(0);
    return {report.timeUs, report.line, {}};
}

std::optional<TouchFrame> FrameMaker::endPacket(const KernelEvent& report) {
    const bool touch = std::exchange(mPacketIsTouch, false);
    const bool foreign = std::exchange(mPacketIsForeign, false);
    mEventsInPacket = 0;
    if (foreign && !touch) {
        ++mCounts.foreignPackets;
        return std::nullopt;
    }
    const std::vector<LiveContact> contacts = positionedContacts();
    mFingerOfId = assignIds(contacts);

    TouchFrame frame{report.timeUs, report.line, {}};
    for (const LiveContact& live : contacts) {
        const auto assigned = std::find(mFingerOfId.begin(), mFingerOfId.end(), live.finger);
        if (assigned == mFingerOfId.end()) {
            ++mCounts.surplusContacts;
            continue;
        }
        Contact& contact = frame.contacts.emplace_back(live.values.toContact(mPenKeysDown != 0));
        contact.id = static_cast<uint32_t>(assigned - mFingerOfId.begin());
        contact.hovering = live.hovering;
    }
    return frame;
}

std::vector<LiveContact> FrameMaker::positionedContacts() {
    const bool packets = mProtocol == TouchProtocol::Packets;
    std::vector<LiveContact> contacts = packets ? mPackets.endPacket(mCounts.surplusContacts) : mSlots.endPacket();
    const auto unpositioned = std::stable_partition(
        contacts.begin(), contacts.end(), [](const LiveContact& contact) { return contact.values.positioned(); });
    mCounts.unpositionedContacts += static_cast<uint32_t>(contacts.end() - unpositioned);
    contacts.erase(unpositioned, contacts.end());
    return contacts;
}

FrameMaker::FingerOfId FrameMaker::assignIds(const std::vector<LiveContact>& contacts) {
    const FingerOfId& previous = mFingerOfId;
    FingerOfId assigned{};
    size_t count = 0;
    const auto had = [&previous](const LiveContact& contact) {
        return std::find(previous.begin(), previous.end(), contact.finger);
    };
    // Who is in the frame stays in it: beyond 16, only the new ones are left out.
    for (const LiveContact& contact : contacts) {
        const auto place = had(contact);
        if (place == previous.end()) continue;
        assigned[static_cast<size_t>(place - previous.begin())] = contact.finger;
        ++count;
    }
    size_t id = 0;
    for (const LiveContact& contact : contacts) {
        if (count >= kMaxContacts || had(contact) != previous.end()) continue;
        while (previous[id] != 0 || assigned[id] != 0) ++id;  // at most 16 of 32 are in `previous`, 15 here beside
        assigned[id] = contact.finger;
        ++count;
    }
    return assigned;
}

void FrameMaker::finish() { mCounts.unfinishedEvents += std::exchange(mEventsInPacket, 0); }

}  // namespace refhost
