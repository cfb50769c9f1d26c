#include "aft/frontfp/ZqFrontFPAftProcessor.h"

#include <bounded_c.h>
#include <cutils/properties.h>

#include <cstdlib>
#include <new>

#include "aft/frontfp/FingerprintKeys.h"
#include "aft/frontfp/FrontFPLog.h"
#include "aft/frontfp/FrontFPProperties.h"
#include "aft/host/PluginApi.h"

namespace android {

namespace {

const char* trueOrFalse(bool value) { return value ? "true" : "false"; }

}  // namespace

Mutex ZqFrontFPAftProcessor::sFrontFPLock;
sp<ZqFrontFPAftProcessor> ZqFrontFPAftProcessor::sInstance;
AftAreaConfig ZqFrontFPAftProcessor::sAftConfig;

void ZqFrontFPAftProcessor::parseConfig(const char* value) {
    sAftConfig.enabled = sAftConfig.scan(value);
    if (!sAftConfig.enabled) {
        LOGE("invalid config value:%s", value);
        const DecisionRecorder recorder(kFrontFP);
        Decision(recorder).record(DecisionRecord::Outcome::Noted, "area-off"_rule, true);
    }
    sAftConfig.initialized = true;
}

void ZqFrontFPAftProcessor::intializeConfig() {
    char value[PROPERTY_VALUE_MAX];
    property_get(kFilterAreaProperty, value, "");
    parseConfig(value);
    property_get(kDisableAbtProperty, value, "0");
    sAftConfig.enabledAbt = static_cast<int>(std::strtol(value, nullptr, 10)) == 0;
    LOGI("enabledAbt:%s", trueOrFalse(sAftConfig.enabledAbt));
    if (sAftConfig.enabledAbt) return;
    const DecisionRecorder recorder(kAbnormalTouch);
    Decision(recorder).record(DecisionRecord::Outcome::Noted, "abnormal-touch-off"_rule, true);
}

bool ZqFrontFPAftProcessor::enabled() {
    Mutex::Autolock lock(sFrontFPLock);
    if (!sAftConfig.initialized) intializeConfig();
    return sAftConfig.enabled;
}

bool ZqFrontFPAftProcessor::enabledAbt() {
    Mutex::Autolock lock(sFrontFPLock);
    if (!sAftConfig.initialized) intializeConfig();
    return sAftConfig.enabledAbt;
}

sp<ZqFrontFPAftProcessor> ZqFrontFPAftProcessor::getInstance() {
    Mutex::Autolock lock(sFrontFPLock);
    if (sInstance == nullptr) sInstance = new ZqFrontFPAftProcessor();
    return sInstance;
}

bool ZqFrontFPAftProcessor::internalKey(int32_t keyCode) { return FingerprintKeys::isNotification(keyCode); }

ZqFrontFPAftProcessor::ZqFrontFPAftProcessor() : mLastRawPointerData(new (std::nothrow) RawPointerData()) {
    if (mLastRawPointerData != nullptr) clearRawPointerData(mLastRawPointerData.get());
    char value[PROPERTY_VALUE_MAX];
    property_get(kFoldDisplayProperty, value, "");
    mFilterAllWindow = value[0] != '\0';
    LOGI("version: %s, filterAllWindow: %s", aft_version, trueOrFalse(mFilterAllWindow));
}

void ZqFrontFPAftProcessor::recordOff(InputMapper* mapper, int64_t when, const RawPointerData& data, BitSet32 idBits) {
    const DecisionRecorder recorder(kFrontFP, mapper, when);
    if (!recorder.listening()) return;
    recordEach(recorder, data, idBits, DecisionRecord::Outcome::OutOfScope, "filter-off"_rule);
}

ZqFrontFPAftProcessor::~ZqFrontFPAftProcessor() { LOGI("destructor release resources"); }

}  // namespace android
