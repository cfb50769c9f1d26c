#pragma once

#include <android/log.h>

// A line in the platform log under the unit's LOG_TAG, which the including file defines first. Macros, so that the
// format stands as a literal at the decision it tells of and the compiler checks it against the arguments.
#define LOGD(...) __android_log_print(ANDROID_LOG_DEBUG, LOG_TAG, __VA_ARGS__)
#define LOGI(...) __android_log_print(ANDROID_LOG_INFO, LOG_TAG, __VA_ARGS__)
#define LOGE(...) __android_log_print(ANDROID_LOG_ERROR, LOG_TAG, __VA_ARGS__)
