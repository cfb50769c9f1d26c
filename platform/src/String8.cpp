#include "utils/String8.h"

#include <cerrno>
#include <cstdio>

namespace android {

String8 String8::format(const char* fmt, ...) {
    String8 text;
    va_list args;
    va_start(args, fmt);
    text.appendFormatV(fmt, args);
    va_end(args);
    return text;
}

status_t String8::appendFormat(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const status_t status = appendFormatV(fmt, args);
    va_end(args);
    return status;
}

status_t String8::appendFormatV(const char* fmt, va_list args) {
    va_list again;
    va_copy(again, args);

    // The spare room first: text that fits it is formatted once, and the NUL falls on the string's own.
    const size_t before = mText.size();
    mText.resize(mText.capacity());
    const int length = std::vsnprintf(mText.data() + before, mText.size() - before + 1, fmt, args);
    const size_t after = before + static_cast<size_t>(length < 0 ? 0 : length);
    if (after <= mText.size()) {
        mText.resize(after);
    } else {
        mText.resize(before);  // the piece that was written would only be copied when the string grows
        mText.resize(after);
        std::vsnprintf(mText.data() + before, after - before + 1, fmt, again);
    }

    va_end(again);
    return length < 0 ? -EINVAL : 0;
}

}  // namespace android
