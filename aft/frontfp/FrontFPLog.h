#pragma once

/// Every unit of this filter logs as the filter.
#define LOG_TAG "ZqFrontFPAftProcessor"

#include "aft/host/Log.h"
