#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

namespace refhost {

/// Durations counted in buckets that are at most 1/32 wide, so that a replay of any length has its percentiles in a
/// fixed amount of memory. Values in ns, 0 and up.
class DurationHistogram {
  public:
    void add(int64_t ns) {
        ++mCounts[bucketOf(static_cast<uint64_t>(std::max<int64_t>(ns, 0)))];
        ++mTotal;
        mMaximum = std::max(mMaximum, ns);
    }

    uint64_t count() const { return mTotal; }
    int64_t maximum() const { return mMaximum; }

    /// The value that `share` (0 to 1) of all do not exceed, to the width of a bucket; 0 where there are none.
    int64_t percentile(double share) const {
        const auto wanted = static_cast<uint64_t>(share * static_cast<double>(mTotal));
        uint64_t seen = 0;
        for (size_t bucket = 0; bucket < mCounts.size(); ++bucket) {
            seen += mCounts[bucket];
            if (seen > wanted || (seen == mTotal && seen > 0)) return std::min(highestIn(bucket), mMaximum);
        }
        return 0;
    }

  private:
    static constexpr unsigned kStepBits = 5;  ///< 32 buckets between one power of two and the next

    static size_t bucketOf(uint64_t ns) {
        const auto width = static_cast<unsigned>(std::bit_width(ns));
        if (width <= kStepBits) return static_cast<size_t>(ns);
        const unsigned shift = width - kStepBits - 1;
        return (size_t{shift} << kStepBits) + static_cast<size_t>(ns >> shift);
    }
    static int64_t highestIn(size_t bucket) {
        const size_t shift = bucket >> kStepBits;
        if (shift <= 1) return static_cast<int64_t>(bucket);
        const uint64_t step = (bucket & ((size_t{1} << kStepBits) - 1)) + (size_t{1} << kStepBits);
        return static_cast<int64_t>(((step + 1) << (shift - 1)) - 1);
    }

    std::array<uint64_t, (64 - kStepBits + 1) << kStepBits> mCounts{};
    uint64_t mTotal = 0;
    int64_t mMaximum = 0;
};

}  // namespace refhost
