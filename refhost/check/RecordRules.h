#pragma once

#include <set>
#include <string>
#include <utility>

#include "refhost/check/Breach.h"
#include "refhost/play/CallResult.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Whether what the library records is what the host sees; CheckRules.h says what each rule demands. Knows nothing of
/// thresholds or of the filters' state. One thread.
class RecordRules {
  public:
    /// Takes every line of the trace: its key may be a cause later.
    void remember(const TraceLine& line);
    /// Takes those lines on which the records can be compared.
    void check(const TraceLine& line, const CallResult& result, Breaches& breaches);

  private:
    void checkFrame(const ProcessRawTouches& call, const CallResult& result);
    void checkPointer(const ProcessRawTouches& call, const CallResult& result, const Record& record);
    void checkKey(const ProcessKey& call, const CallResult& result);
    void checkMeasurements(const Record& record);
    void checkMeasurement(const Record& record, const Measurement& measured);
    void checkRule(const Record& record);
    void breach(std::string_view rule, std::string text);

    std::set<std::pair<int32_t, int64_t>> mKeys;  ///< code and ms of each key-down
    Breaches* mBreaches = nullptr;
    uint32_t mLine = 0;
};

}  // namespace refhost
