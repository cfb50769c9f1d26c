#pragma once

#include <cstdint>

#include "aft/host/RawPointerData.h"

namespace android {

/// The fingers of a frame: the records of those of a set of ids that have one and are in contact, lowest id first. The
/// id is the set's; a frame may lead it to a record that carries another. Made for a loop:
///
///     for (auto [id, p] : contacts(data, idBits))
///
/// The set is taken as it was when the loop began, so the loop may change the one it came from.
template <typename Data, typename Pointer>
class Contacts {
  public:
    struct Contact {
        uint32_t id;
        Pointer& p;
    };

    Contacts(Data& data, BitSet32 ids) : mData(data), mIds(ids) {}

    class Iterator {
      public:
        Iterator(Data& data, BitSet32::Iterator at, BitSet32::Iterator end) : mData(data), mAt(at), mEnd(end) {
            skip();
        }
        Contact operator*() const { return {*mAt, *mFound}; }
        Iterator& operator++() {
            ++mAt;
            skip();
            return *this;
        }
        bool operator==(const Iterator& other) const { return mAt == other.mAt; }

      private:
        void skip() {
            for (; !(mAt == mEnd); ++mAt) {
                mFound = mData.find(*mAt);
                if (mFound != nullptr && mFound->isHovering == 0) return;
            }
        }

        Data& mData;
        BitSet32::Iterator mAt;
        BitSet32::Iterator mEnd;
        Pointer* mFound = nullptr;  ///< the record of mAt
    };
    Iterator begin() const { return {mData, mIds.begin(), mIds.end()}; }
    Iterator end() const { return {mData, mIds.end(), mIds.end()}; }

  private:
    Data& mData;
    BitSet32 mIds;
};

inline Contacts<RawPointerData, RawPointerData::Pointer> contacts(RawPointerData& data, BitSet32 ids) {
    return {data, ids};
}
inline Contacts<const RawPointerData, const RawPointerData::Pointer> contacts(const RawPointerData& data,
                                                                              BitSet32 ids) {
    return {data, ids};
}

}  // namespace android
