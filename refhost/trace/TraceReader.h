#pragma once

#include <istream>
#include <memory>
#include <string>

#include "refhost/trace/JsonLine.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Reads a trace line by line; what it holds does not grow with the trace's length. A fault is an InputError that names
/// file, line and key, thrown when the line is reached. One thread.
class TraceReader : public TraceSource {
  public:
    /// Opens the file, or standard input for "-", and reads the header. Throws FileError where it cannot be opened.
    explicit TraceReader(const std::string& path);
    /// Reads from a stream that outlives the reader; `name` stands for it in messages.
    TraceReader(std::istream& in, std::string name);

    const TraceHeader& header() const override { return mHeader; }
    bool next(TraceLine& line) override;
    std::optional<double> progress() override;
    bool wouldWait() override;

  private:
    bool readLine();
    void readHeader();
    void checkTime(const TraceLine& line);

    std::string mName;
    std::unique_ptr<std::istream> mOwned;
    std::istream* mIn;
    std::optional<double> mSize;  ///< bytes, where known
    double mRead = 0;             ///< bytes
    uint32_t mLineNumber = 0;
    std::string mText;
    JsonLine mJson;
    TraceHeader mHeader;
    int64_t mClock = 0;
};

}  // namespace refhost
