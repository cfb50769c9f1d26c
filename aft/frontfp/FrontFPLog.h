#pragma once

/// Every unit of this filter logs as the filter.
#define AFT_LOG_TAG "ZqFrontFPAftProcessor"

#include "aft/host/Log.h"
