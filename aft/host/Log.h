#pragma once

#include <android/log.h>

// A line in the platform log under AFT_LOG_TAG, which the including file defines. Macros, so that the
// format stands as a literal at the decision it tells of and the compiler checks it against the arguments.
#define LOGD(...) __android_log_print(ANDROID_LOG_DEBUG, AFT_LOG_TAG, __VA_ARGS__)
#define LOGI(...) __android_log_print(ANDROID_LOG_INFO, AFT_LOG_TAG, __VA_ARGS__)
#define LOGW(...) __android_log_print(ANDROID_LOG_WARN, AFT_LOG_TAG, __VA_ARGS__)
#define LOGE(...) __android_log_print(ANDROID_LOG_ERROR, AFT_LOG_TAG, __VA_ARGS__)
