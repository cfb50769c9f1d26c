#pragma once

/// Every unit of this filter logs as the filter.
#define AFT_LOG_TAG "ZqFrontFPAftProcessor"

#include "aft/host/Log.h"

namespace android {

// The names of its two parts in decision records.
inline constexpr char kFrontFP[] = "front-fingerprint";
inline constexpr char kAbnormalTouch[] = "abnormal-touch";

}  // namespace android
