#include "bench/soak/Day.h"

namespace soak {

namespace {

constexpr bool kFoldable = ZQAFT_FOLDABLE != 0;

}  // namespace

void Day::pass() {
    swipeFromSensor();
    keyUnderFinger();
    keyOfASwipe();
    unlock();
    cheekInACall();
    handOverNotch();
    coverInAGesture();
    crowd();
    if (kFoldable) fold();
    service();
}

void Day::rest() { mPhone.pass(mPhone.any(400, 2000)); }
int32_t Day::sensorX() { return mPhone.any(450, 630); }
int32_t Day::sensorY() { return mPhone.any(2180, 2340); }

/// A finger brushes the sensor, is held back, and becomes a swipe.
void Day::swipeFromSensor() {
    rest();
    mPhone.press(516);
    const int32_t x = sensorX(), y = sensorY();
    mPhone.put(3, x, y);
    mPhone.frame(mPhone.any(20, 250));
    mActs["fingers held back at the sensor"] += mPhone.back(3) == nullptr ? 1 : 0;
    for (int32_t up = 10; up <= 600; up += mPhone.any(10, 60)) {
        mPhone.put(3, x + up / 20, y - up);
        mPhone.frame();
        const auto* seen = mPhone.back(3);
        mActs["fingers restored"] += seen != nullptr && seen->y == y ? 1 : 0;
    }
    mPhone.lift();
}

/// A key comes up just after a single finger has landed above the sensor: it waits until the finger lifts, or a
/// second one comes.
void Day::keyUnderFinger() {
    rest();
    const int32_t x = sensorX(), y = sensorY(), code = mPhone.any(0, 1) == 0 ? 601 : mPhone.any(513, 514);
    mPhone.put(0, x, y);
    mPhone.frame();
    mPhone.pass(mPhone.any(1, 100));
    const uint64_t sent = mPhone.tally().sent;
    mPhone.press(code);
    mPhone.put(0, x, y);
    if (mPhone.any(0, 1) == 0) mPhone.put(9, 300, 900);
    mPhone.frame();
    mPhone.lift();
    mActs["keys sent again"] += mPhone.tally().sent - sent;
}

/// The finger that it waits for turns out to be a swipe: no key.
void Day::keyOfASwipe() {
    rest();
    mPhone.press(516);
    mPhone.pass(mPhone.any(10, 200));
    const int32_t x = sensorX(), y = sensorY();
    mPhone.put(0, x, y);
    mPhone.frame();
    mPhone.pass(60);
    const uint64_t sent = mPhone.tally().sent;
    const bool waits = mPhone.press(513);
    mPhone.put(0, x, y - mPhone.any(40, 400));
    mPhone.frame();
    mPhone.lift();
    mActs["keys dropped"] += waits && mPhone.tally().sent == sent ? 1 : 0;
}

/// A finger is laid on the sensor, and is what the sensor identifies, or slides over it.
void Day::unlock() {
    rest();
    const bool slides = mPhone.any(0, 2) == 0;
    const int32_t x = 420, y = sensorY();
    for (int32_t i = 0; i < 4; ++i) {
        mPhone.put(1, x + (slides ? 40 * i : i), y);
        mPhone.frame(mPhone.any(8, 60));
    }
    mPhone.press(slides ? 516 : 517);
    const uint64_t before = mPhone.tally().cancelled;
    for (int32_t left = mPhone.any(2, 10); left > 0; --left) {
        mPhone.put(1, x, y);
        mPhone.frame();
    }
    mPhone.press(518);
    mPhone.lift();
    mActs[slides ? "gestures cancelled for a slide" : "gestures cancelled for an unlock"] +=
        mPhone.tally().cancelled - before;
}

void Day::cheekInACall() {
    const bool locked = mPhone.any(0, 1) == 0;
    mPhone.show("Window{9 u0 com.android.incallui/com.android.incallui.InCallActivity}", true, false, locked);
    rest();
    const uint64_t before = mPhone.tally().cancelled;
    for (int32_t i = 0; i < 20; ++i) {
        mPhone.put(0, 500 + i, 700);
        mPhone.put(1, 600, 900 + i, i > 10 ? Phone::kAbnormal : 0);
        mPhone.frame();
    }
    mPhone.lift();
    mActs["gestures cancelled as abnormal"] += mPhone.tally().cancelled - before;
    home();
}

void Day::handOverNotch() {
    const bool marked = mPhone.any(0, 1) == 0;
    mPhone.rotate(mPhone.any(0, 1) == 0 ? 1 : 3);
    mPhone.show("Window{8 u0 com.example/.Game}", false, marked, false);
    rest();
    mPhone.pass(1700);  // no enrolment counts any more
    for (int32_t i = 0; i < 30; ++i) {
        mPhone.put(0, 800, mPhone.any(0, 80));
        mPhone.put(2, 500 + i, 1000);
        mPhone.frame();
        mActs["fingers taken by the notch"] += mPhone.back(0) == nullptr ? 1 : 0;
        mActs["fingers kept in a marked window"] += marked && mPhone.back(0) != nullptr ? 1 : 0;
    }
    mActs["keys consumed in landscape"] += mPhone.press(502) ? 1 : 0;
    mPhone.lift();
    mPhone.rotate(0);
    home();
}

void Day::coverInAGesture() {
    mPhone.coverMoves(mPhone.any(0, 2));
    rest();
    const Tally before = mPhone.tally();
    for (int32_t i = 0; i < 30; ++i) {
        for (uint32_t id = 0; id < 3; ++id) mPhone.put(id, 200 + 200 * static_cast<int32_t>(id), 300 + i);
        if (i == 10) mPhone.coverMoves(mPhone.any(0, 2));
        mPhone.frame(mPhone.any(8, 20));
    }
    mPhone.lift();
    mActs["gestures cancelled by the cover"] += mPhone.tally().cancelled - before.cancelled;
    mActs["fingers taken by the cover"] += mPhone.tally().removed - before.removed;
    mActs["gestures reported"] += mPhone.tally().reports - before.reports;
}

/// No plan at all: up to ten fingers anywhere, flagged by chance, keys, windows, turns and sensors between them.
void Day::crowd() {
    for (int32_t i = 0; i < 100; ++i) {
        for (int32_t n = mPhone.any(0, 10); n > 0; --n) {
            const auto flags = static_cast<uint32_t>(mPhone.any(0, 40) == 0 ? mPhone.any(1, 63) << 24 : 0);
            const auto id = static_cast<uint32_t>(mPhone.any(0, 31));
            const int32_t x = mPhone.any(0, 1079), y = mPhone.any(0, 2339);
            mPhone.put(id, x, y, flags);
        }
        mPhone.frame(mPhone.any(1, 30));
        switch (mPhone.any(0, 40)) {
            case 0: mPhone.press(mPhone.any(500, 602)); break;
            case 1: mPhone.press(mPhone.any(511, 519)); break;
            case 2: mPhone.press(66); break;
            case 3: mPhone.rotate(mPhone.any(0, 3)); break;
            case 4: mPhone.coverMoves(mPhone.any(-1, 3)); break;
            case 5: mPhone.show("Window{7 u0 com.example/.Any}", mPhone.any(0, 1) == 0, true, false); break;
            case 6: kFoldable ? mPhone.foldsTo(static_cast<float>(mPhone.any(0, 180))) : mPhone.exit(); break;
            case 7: mPhone.start(); break;
            default: break;
        }
    }
    mPhone.lift();
    mPhone.rotate(0);
    home();
    mPhone.start();
    mPhone.pass(1700);  // what the sensor's last keys said is over
}

void Day::fold() {
    rest();
    for (int32_t i = 0; i < 30; ++i) mPhone.foldsTo(0);
    for (int32_t i = 0; i < 6; ++i) mPhone.foldsTo(90);
    const uint64_t before = mPhone.tally().cancelled;
    for (int32_t i = 0; i < 10; ++i) {
        mPhone.put(0, 500, 700 + i);
        mPhone.frame();
    }
    mPhone.lift();
    mActs["gestures cancelled by the fold"] += mPhone.tally().cancelled - before;
    for (int32_t i = 0; i < 90; ++i) mPhone.foldsTo(90);
}

/// The fold angle's filter does not come back from a death, so where it is built the service lives on.
void Day::service() {
    mPhone.exit();
    mPhone.start();
    mPhone.serviceRegisters(!kFoldable);
}

void Day::home() { mPhone.show("Window{5 u0 com.example/.Launcher}", false, false, false); }

}  // namespace soak
