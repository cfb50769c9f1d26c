#pragma once

#include <string>
#include <string_view>

#include "refhost/recording/Recording.h"

namespace refhost::libinput {

/// True of a line that only such a document begins with, quoted or not.
bool beginsDocument(std::string_view line);

/// Takes the YAML document out of a text as it was pasted: without the messages and the device menu that the tool
/// printed before it, without a mail's quote prefix and the replies in between, without a last line that was cut off.
/// Every line of `text` is a line of the result, an empty one where nothing is left, so that line numbers stay true.
/// Records in `recording` what was left out.
std::string documentIn(std::string_view text, Recording& recording);

}  // namespace refhost::libinput
