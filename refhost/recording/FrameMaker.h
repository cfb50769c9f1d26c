#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "refhost/recording/PacketContacts.h"
#include "refhost/recording/Recording.h"
#include "refhost/recording/SlotContacts.h"
#include "refhost/recording/TouchFrame.h"

namespace refhost {

/// How a panel tells its contacts apart.
enum class TouchProtocol {
    Packets,  ///< A: SYN_MT_REPORT behind each contact
    Slots,    ///< B: ABS_MT_SLOT and tracking ids
};

/// The protocol of a device by all its events: a single SYN_MT_REPORT makes it A. Without one it is B, also where
/// ABS_MT_SLOT never appears, for a panel need not say that it goes on with slot 0.
TouchProtocol touchProtocolOf(const Recording& recording, uint32_t device);

/// Makes frames of the events of one touch device, as an input service does.
///
/// A frame per SYN_REPORT, holding every contact whose position is known. A contact has the lowest pointer id that was
/// free at the end of the previous frame and is not taken in this one, and keeps it until it lifts. At SYN_DROPPED the
/// service cannot know what it missed: nothing counts up to the next SYN_REPORT, which brings a frame without contacts,
/// and what reports again later is a new finger.
///
/// One thread at a time. Never throws but for want of memory, whatever the events say.
class FrameMaker {
  public:
    static constexpr size_t kMaxContacts = 16;

    /// What the events held that is in no frame.
    struct Counts {
        uint32_t foreignPackets = 0;  ///< packets with nothing that a touch panel sends, such as a light sensor's
        uint32_t unpositionedContacts =
            0;                          ///< contacts left out of a frame since x or y was not known yet, frame by frame
        uint32_t surplusContacts = 0;   ///< contacts left out beyond 16 in a frame, frame by frame
        uint32_t badSlotEvents = 0;     ///< events of slots outside 0..255
        uint32_t resyncs = 0;           ///< SYN_DROPPED that began a loss
        uint32_t lostEvents = 0;        ///< between SYN_DROPPED and SYN_REPORT
        uint32_t unfinishedEvents = 0;  ///< behind the last SYN_REPORT, known after finish()
    };

    explicit FrameMaker(TouchProtocol protocol) : mProtocol(protocol) {}

    /// Takes the next event of the device; `KernelEvent::device` is not looked at.
    /// @return the finished frame, at a SYN_REPORT that is a touch panel's
    std::optional<TouchFrame> feed(const KernelEvent& event);

    /// The end of the recording: a packet without its SYN_REPORT is void.
    void finish();

    const Counts& counts() const { return mCounts; }

  private:
    static constexpr size_t kMaxIds = 32;
    using FingerOfId = std::array<uint64_t, kMaxIds>;  ///< pointer id to finger, 0 where the id is free

    std::optional<TouchFrame> endPacket(const KernelEvent& report);
    TouchFrame resume(const KernelEvent& report);
    void takeTouch(const KernelEvent& event);
    void takeKey(const KernelEvent& event);
    std::vector<LiveContact> positionedContacts();
    FingerOfId assignIds(const std::vector<LiveContact>& contacts);

    TouchProtocol mProtocol;
    SlotContacts mSlots;
    PacketContacts mPackets;
    FingerOfId mFingerOfId{};
    uint64_t mPenKeysDown = 0;  ///< a bit each, by code - BTN_DIGI
    bool mLosing = false;       ///< between SYN_DROPPED and SYN_REPORT
    uint32_t mEventsInPacket = 0;
    bool mPacketIsTouch = false;
    bool mPacketIsForeign = false;
    Counts mCounts;
};

}  // namespace refhost
