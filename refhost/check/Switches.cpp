#include "refhost/check/Switches.h"

#include "refhost/play/LogLines.h"

namespace refhost {

void Switches::hear(const CallResult& result) {
    if (countLines(result, kFrontFpTag, "invalid config value:") > 0) area = false;
    if (countLines(result, kFrontFpTag, "the filter area configure exceeds the limits!") > 0) area = false;
    if (countLines(result, kFrontFpTag, "enabledAbt:false") > 0) abnormal = false;
}

}  // namespace refhost
