#pragma once

#include <string>
#include <vector>

#include "platform/control/LogSink.h"

namespace test {

/// Takes the platform's log while it lives.
class LogRecorder {
  public:
    LogRecorder() {
        aftplatform::setLogSink([this](const aftplatform::LogLine& line) { mTexts.emplace_back(line.text); });
    }
    ~LogRecorder() { aftplatform::setLogSink({}); }
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;

    const std::vector<std::string>& texts() const { return mTexts; }

  private:
    std::vector<std::string> mTexts;
};

}  // namespace test
