#include "refhost/recording/PacketContacts.h"

#include <linux/input-event-codes.h>

#include <algorithm>

namespace refhost {

namespace {

/// As many as a frame holds. Also bounds the pairs to compare, whatever a file says.
constexpr size_t kMaxListed = 16;

struct Pair {
    size_t now = 0;
    size_t last = 0;
    double squaredDistance = 0;
};

}  // namespace

void PacketContacts::take(uint16_t code, int32_t value) {
    mOpenHasData = true;
    if (code != ABS_MT_TRACKING_ID) {
        mOpen.contact.values.set(code, value);
    } else if (value >= 0) {
        mOpen.trackingId = value;
    }
}

void PacketContacts::endContact() {
    mListed = true;
    const ContactValues& values = mOpen.contact.values;
    const bool lifted = values.unpressed() || values.withoutArea();
    if (mOpenHasData && !lifted) {
        if (mListing.size() < kMaxListed) {
            mListing.push_back(mOpen);
        } else {
            ++mOverflow;
        }
    }
    mOpen = {};
    mOpenHasData = false;
}

void PacketContacts::forgetContacts() {
    mLast.clear();
    mListing.clear();
    mOpen = {};
    mOpenHasData = false;
    mListed = false;
    mOverflow = 0;
}

std::vector<LiveContact> PacketContacts::endPacket(uint32_t& leftOut) {
    if (mOpenHasData) endContact();  // some drivers leave out the last SYN_MT_REPORT
    if (mListed) {
        recogniseFingers();
        mLast.swap(mListing);
    }
    leftOut += mOverflow;
    mListing.clear();
    mListed = false;
    mOverflow = 0;

    std::vector<LiveContact> contacts;
    for (const ListedContact& listed : mLast) contacts.push_back(listed.contact);
    return contacts;
}

void PacketContacts::recogniseFingers() {
    std::vector<Pair> pairs;
    for (size_t now = 0; now < mListing.size(); ++now) {
        for (size_t last = 0; last < mLast.size(); ++last) {
            if (mListing[now].trackingId != mLast[last].trackingId) continue;
            const ContactValues& a = mListing[now].contact.values;
            const ContactValues& b = mLast[last].contact.values;
            if (!a.positioned() || !b.positioned()) continue;
            pairs.push_back({now, last, a.squaredDistance(b)});
        }
    }
    std::stable_sort(pairs.begin(), pairs.end(),
                     [](const Pair& a, const Pair& b) { return a.squaredDistance < b.squaredDistance; });

    bool recognised[kMaxListed] = {};
    for (const Pair& pair : pairs) {
        uint64_t& finger = mListing[pair.now].contact.finger;
        if (finger != 0 || recognised[pair.last]) continue;
        finger = mLast[pair.last].contact.finger;
        recognised[pair.last] = true;
    }
    for (ListedContact& listed : mListing) {
        if (listed.contact.finger == 0) listed.contact.finger = ++mLandings;
        listed.contact.hovering = listed.contact.values.distant();
    }
}

}  // namespace refhost
