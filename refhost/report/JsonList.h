#pragma once

#include <string_view>

#include "refhost/JsonText.h"

namespace refhost {

/// The elements of a JSON array, as they come. One thread.
class JsonList {
  public:
    /// Begins the next element, and answers where it goes.
    TextBuffer& next() {
        if (mText.size() > 0) mText.push_back(',');
        return mText;
    }

    /// All of them, with commas between; empty where there is none.
    std::string_view elements() const { return {mText.data(), mText.size()}; }

    /// Appends `"name":[...]`.
    void write(TextBuffer& out, std::string_view name) const {
        append(out, FMT_COMPILE(R"("{}":[)"), name);
        append(out, elements());
        out.push_back(']');
    }

  private:
    TextBuffer mText;
};

/// Microseconds of a time in ns: what a report counts in, since a browser's numbers hold them exactly.
constexpr int64_t toUs(int64_t when) { return when / 1000; }

}  // namespace refhost
