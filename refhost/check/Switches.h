#pragma once

#include "refhost/play/CallResult.h"

namespace refhost {

/// Which of the front fingerprint filter's two sides are on, as its log tells with the first call and with a surface
/// that the filter area does not fit.
struct Switches {
    bool area = true;      ///< touches near the sensor and its keys; once off, it stays off
    bool abnormal = true;  ///< abnormal-touch cancellation

    void hear(const CallResult& result);
};

}  // namespace refhost
