#include "aft/frontfp/AftAreaConfig.h"

#include <bounded_c.h>

namespace android {

bool AftAreaConfig::scan(const char* text) {
    valueCount = static_cast<int8_t>(sscanf_s(text, "%d,%d,%d,%d", &values[0], &values[1], &values[2], &values[3]));
    const auto& [first, second, third, fourth] = values;
    if (valueCount == 4) {  // left may lie on the panel's edge; the others of a real area cannot be 0
        return first >= 0 && second > 0 && third > 0 && fourth > 0 && first < third && second < fourth;
    }
    if (valueCount == 2) return first > 0 && second > 0;
    return false;
}

bool AftAreaConfig::areaOn(int32_t width, int32_t height, AftArea& area) const {
    int64_t left = 0;  // 64 bits: no size that a property or a host can name overflows
    int64_t top = 0;
    int64_t right = 0;
    int64_t bottom = 0;
    if (valueCount == 2) {  // centred, on the bottom edge; halved one by one, so odd sizes lose their halves
        left = int64_t{width / 2} - values[0] / 2;
        right = int64_t{values[0] / 2} + width / 2;
        top = int64_t{height} - values[1];
        bottom = height;
    } else if (valueCount == 4) {
        left = values[0];
        top = values[1];
        right = values[2];
        bottom = values[3];
    }
    const bool fits = left >= 0 && left <= right && top <= bottom && top >= 0 && right <= width && bottom <= height;
    if (fits) {
        area = {static_cast<int32_t>(left), static_cast<int32_t>(top), static_cast<int32_t>(right),
                static_cast<int32_t>(bottom)};
    }
    return fits;
}

}  // namespace android
