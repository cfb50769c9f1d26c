#pragma once

#include <vector>

#include "aft/host/InputMapper.h"
#include "platform/control/SensorService.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// A text that the plug-in has reported to the reader's policy.
struct Report {
    int32_t event = 0;
    std::string text;
};

/// What the plug-in has asked of the host, and of the sensor service, during one line.
struct Requests {
    std::vector<int64_t> cancelled;  ///< `when` of each cancelTouch, ns
    std::vector<Report> reports;
    std::vector<aftplatform::sensors::Reached> service;  ///< calls that reached the sensor service, in order

    void clear() {
        cancelled.clear();
        reports.clear();
        service.clear();
    }
};

/// One input device with its mapper, context and policy, as the input service holds them; writes down what the plug-in
/// asks of them. Stays where it is: the plug-in keeps pointers to the mapper.
class HostDevice {
  public:
    /// `requests` outlives the device.
    HostDevice(const DeviceDescription& description, Requests& requests);
    HostDevice(const HostDevice&) = delete;
    HostDevice& operator=(const HostDevice&) = delete;

    int32_t id() const { return mDevice.id; }
    android::InputMapper* mapper() { return &mMapper; }

  private:
    class Policy : public android::InputReaderPolicyInterface {
      public:
        explicit Policy(Requests& requests) : mRequests(requests) {}
        void reportEvent(const char* message, int32_t eventId) override;

      private:
        Requests& mRequests;
    };

    class Context : public android::InputReaderContext {
      public:
        explicit Context(Policy& policy) : mPolicy(policy) {}
        android::InputReaderPolicyInterface* getPolicy() override { return &mPolicy; }

      private:
        Policy& mPolicy;
    };

    class Mapper : public android::InputMapper {
      public:
        Mapper(android::InputDevice* device, Context* context, uint32_t sources, Requests& requests)
            : InputMapper(device, context), mSources(sources), mRequests(requests) {}
        uint32_t getSources() override { return mSources; }
        void cancelTouch(int64_t when) override { mRequests.cancelled.push_back(when); }

      private:
        uint32_t mSources;
        Requests& mRequests;
    };

    Policy mPolicy;
    Context mContext;
    android::InputDevice mDevice;
    Mapper mMapper;
};

}  // namespace refhost
