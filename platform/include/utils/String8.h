#pragma once

#include <compare>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>

#include "aftplatform/export.h"

namespace android {

using status_t = int32_t;

/// A text of bytes, always closed by a NUL. Character pointers handed to it must not be null.
class String8 {
  public:
    String8() = default;
    explicit String8(const char* text) : mText(text) {}
    explicit String8(const char* text, size_t length) : mText(text, length) {}

    /// A new text formatted as printf does.
    AFTPLATFORM_API static String8 format(const char* fmt, ...) __attribute__((format(printf, 1, 2)));

    const char* c_str() const { return mText.c_str(); }
    const char* string() const { return mText.c_str(); }
    size_t length() const { return mText.size(); }  ///< bytes, without the NUL
    size_t size() const { return mText.size(); }
    bool isEmpty() const { return mText.empty(); }

    // Those that return a status_t answer 0.
    void setTo(const String8& other) { mText = other.mText; }
    status_t setTo(const char* text) { return mText.assign(text), 0; }
    status_t setTo(const char* text, size_t length) { return mText.assign(text, length), 0; }
    status_t append(const String8& other) { return mText.append(other.mText), 0; }
    status_t append(const char* text) { return mText.append(text), 0; }
    status_t append(const char* text, size_t length) { return mText.append(text, length), 0; }

    /// Appends as printf formats, straight into this text's own storage: allocates only when that is too small.
    /// The arguments must not point into this text.
    /// @return 0; negative, with the text as before, when `fmt` could not be formatted
    AFTPLATFORM_API status_t appendFormat(const char* fmt, ...) __attribute__((format(printf, 2, 3)));

    /// Empties the text and keeps its storage for the next; the phone may give it back.
    void clear() { mText.clear(); }

    friend bool operator==(const String8& a, const String8& b) { return a.mText == b.mText; }
    friend bool operator==(const String8& a, const char* b) { return a.mText == b; }
    friend std::strong_ordering operator<=>(const String8& a, const String8& b) {
        return a.mText.compare(b.mText) <=> 0;
    }

  private:
    status_t appendFormatV(const char* fmt, va_list args);

    std::string mText;
};

}  // namespace android
