#include "refhost/play/HostDevice.h"

namespace refhost {

HostDevice::HostDevice(const DeviceDescription& description, Requests& requests)
    : mPolicy(requests), mContext(mPolicy), mMapper(&mDevice, &mContext, description.sources, requests) {
    mDevice.context = &mContext;
    mDevice.id = description.id;
    mDevice.name = description.name;
    mDevice.isExternal = description.external ? 1 : 0;
}

void HostDevice::Policy::reportEvent(const char* message, int32_t eventId) {
    mRequests.reports.push_back({eventId, message});
}

}  // namespace refhost
