#include <android/log.h>

#include <cstdlib>

#include "aft/host/PluginApi.h"

using android::BitSet32;
using android::NotifyKeyArgs;
using android::RawPointerData;

void* allocNotifyKeyArgs() noexcept { return std::malloc(sizeof(NotifyKeyArgs)); }

void releaseNotifyKeyArgs(void* args) noexcept { std::free(args); }

void copyRawPointerData(const RawPointerData* src, RawPointerData* dst) noexcept {
    dst->pointerCount = src->pointerCount;
    dst->hoveringIdBits = src->hoveringIdBits;
    dst->touchingIdBits = src->touchingIdBits;
    for (uint32_t i = 0; i < src->recordCount(); ++i) {
        dst->pointers[i] = src->pointers[i];
        const uint32_t id = src->pointers[i].id;
        if (id >= RawPointerData::kMaxIds) {
            __android_log_print(ANDROID_LOG_ERROR, nullptr, "copyRawPointerData pointer[%u] id=%u is invalid!", i, id);
            continue;
        }
        dst->idToIndex[id] = src->idToIndex[id];
    }
}

void clearRawPointerData(RawPointerData* data) noexcept {
    data->pointerCount = 0;
    data->hoveringIdBits.clear();
    data->touchingIdBits.clear();
}

RawPointerData* filterAndCompactPointers(RawPointerData* data, BitSet32* idBits, const BitSet32* filterIds) noexcept {
    const uint32_t count = data->recordCount();
    uint32_t kept = 0;
    bool removing = false;
    for (uint32_t i = 0; i < count; ++i) {
        const uint32_t id = data->pointers[i].id;
        if (filterIds->hasBit(id)) {  // read afresh each time: it may be `idBits`, which loses ids as we go
            data->touchingIdBits.clearBit(id);
            idBits->clearBit(id);
            if (!removing) kept = i;
            removing = true;
        } else if (removing) {
            data->pointers[kept] = data->pointers[i];
            if (id < RawPointerData::kMaxIds) data->idToIndex[id] = kept;
            ++kept;
        }
    }
    if (removing) data->pointerCount = kept;
    return data;
}

bool touchOnSide(const RawPointerData::Pointer* p) noexcept {
    return (p->extraData & RawPointerData::Pointer::kOnSide) != 0;
}

bool touchDataValid(const RawPointerData::Pointer* p) noexcept {
    return (p->extraData & RawPointerData::Pointer::kDataValid) != 0;
}

bool touchIsFolded(const RawPointerData::Pointer* p) noexcept {
    return (p->extraData & RawPointerData::Pointer::kFolded) != 0;
}
