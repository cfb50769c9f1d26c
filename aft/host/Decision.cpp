#include "aft/host/Decision.h"

#include <utils/Timers.h>

#include <cmath>

namespace android {

void Measurements::keep(Quantity what, double value, double least, double most, bool holds, MeasurementCause from) {
    if (mCount < kMost) mList[mCount++] = {what.name, what.unit, value, least, most, holds, what.setting, from};
}

void Measurements::keepSince(Quantity what, int64_t value, int64_t least, int64_t most, bool holds,
                             MeasurementCause from) {
    const bool hasHappened = from.when != 0;
    if (!hasHappened && !holds) return;
    if (!hasHappened) from = {"start of the clock", 0, 0, 0};
    kept(what, value, least, most, holds, from);
}

void Measurements::keepAbove(Quantity what, float value, float limit, bool holds, MeasurementCause from) {
    keep(what, double{value}, double{std::nextafter(limit, std::numeric_limits<float>::infinity())}, kOpen, holds,
         from);
}

void Measurements::addAll(const Measurements& others) {
    for (uint32_t i = 0; i < others.mCount && mCount < kMost; ++i) mList[mCount++] = others.mList[i];
}

int64_t DecisionRecorder::clockTime() { return systemTime(SYSTEM_TIME_MONOTONIC); }

void DecisionRecorder::begin(const char* filter, const InputMapper* mapper, int64_t when) {
    mBlank = {};
    mBlank.filter = filter;
    mBlank.when = when;
    mBlank.hasDevice = mapper != nullptr;
    if (mapper != nullptr) mBlank.deviceId = mapper->getDeviceId();
}

void Decision::about(uint32_t id, const RawPointerData::Pointer& p) {
    mHasPointer = true;
    mPointerId = id;
    mX = p.x;
    mY = p.y;
    mExtraData = p.extraData;
}

void Decision::about(int32_t keyCode) {
    mHasKey = true;
    mKeyCode = keyCode;
}

void Decision::deliver(DecisionRecord::Outcome outcome, Rule rule, bool logged) const {
    DecisionRecord record = mRecorder.mBlank;
    record.rule = nameOf(rule);
    record.outcome = outcome;
    record.logged = logged;
    record.hasPointer = mHasPointer;
    if (mHasPointer) {
        record.pointerId = mPointerId;
        record.x = mX;
        record.y = mY;
        record.extraData = mExtraData;
    }
    record.hasKey = mHasKey;
    if (mHasKey) record.keyCode = mKeyCode;
    record.measurementCount = count();
    record.measurements = list();
    mRecorder.mListener->onDecision(record, mRecorder.mListener->context);
}

void recordEach(const DecisionRecorder& recorder, const RawPointerData& data, BitSet32 ids,
                DecisionRecord::Outcome outcome, Rule rule) {
    for (uint32_t id : ids) {
        const RawPointerData::Pointer* p = data.find(id);
        if (p != nullptr) Decision(recorder, id, *p).record(outcome, rule);
    }
}

}  // namespace android
