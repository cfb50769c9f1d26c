// The filter's lines as they stand in a phone's log: engineers search for them, and the tool reads them. A text, a
// number's place, a priority or an order that changes makes every search and every script miss the decision.

#include "tests/support/Phone.h"

using namespace test;

namespace {

const Finger kOnSensor = finger(0).at(540, 2200);

struct LogText : ::testing::Test {
    Phone phone;
    std::string log;

    /// Keeps what the filter has logged of what was just done.
    template <typename Answer>
    void keep(const Answer& /*done*/) {
        for (const std::string& line : phone.log()) log += line + "\n";
    }
};

// An engineer would not find out why a key was dispatched or not.
TEST_F(LogText, OfKeys) {
    phone.rotate(1);
    phone.touch(finger(2).at(540, 1000));
    keep(phone.key(501));
    keep(phone.key(501, false));
    for (const int32_t code : {516, 517, 519}) keep(phone.key(code));
    phone.lift();
    keep(phone.key(501));
    EXPECT_EQ(log, R"(INFO During TouchSeq#1 point(540, 1000) in the central area
INFO one or more fingers touching on centeral area, filter this fingerprint's event
INFO During TouchSeq#1, fingerprint event keycode=501 down filtered
DEBUG remove the filtered key-up event keyCode=501 up
DEBUG During TouchSeq#1, receive finger down on FP, last touch point(id=2, x=540, y=1000), filter area:[400,2100 ~ 680,2340]
DEBUG During TouchSeq#1, new finger touch down on the FP, reset the wait state
DEBUG Start identify finger in touchSeq#1, mStateTime=60000ms
INFO start enroll the fingerprint
DEBUG After TouchSeq#1, process fingerprint event keycode=501 down
)");
}

// Nor what became of a key that waited for a finger on the sensor, or that such a finger took along.
TEST_F(LogText, OfKeysUnderAFinger) {
    phone.rotate(1);  // a finger in the area is not in the middle of the screen
    phone.touch(kOnSensor);
    keep(phone.after(60ms).key(513));
    keep(phone.key(601));
    phone.key(66);
    keep(phone.key(516));
    keep(phone.after(60ms).lift());
    keep(phone.key(511));
    keep(phone.key(66, false));
    phone.touch(finger(0).at(50, 2000));
    keep(phone.key(514));
    EXPECT_EQ(log, R"(INFO delayDispatchKey delay dispatch the key:513
INFO During TouchSeq#1, fingerprint event keycode=513 down filtered
INFO delayDispatchKey, it already has an pending key, do not delay current key!
INFO During touchSeq#1, pointer is touching, update the nearby FP point(id=0) timestamp
INFO finger touching nearby the fingerprint, filter this fingerprint's event
INFO During TouchSeq#1, fingerprint event keycode=601 down filtered
DEBUG During TouchSeq#1, receive finger down on FP, last touch point(id=0, x=540, y=2200), filter area:[400,2100 ~ 680,2340]
INFO During touchSeq#1, pointer is touching, update the nearby FP point(id=0) timestamp
INFO During TouchSeq#1, receive finger down on FP but TP touch recently, may filter next key with any keycode
INFO handlePendingKey, force re-dispatch keyCode=513
INFO handlePendingKey, re-dispatch the pending keycode=513 down and up
DEBUG Finger down since touchSeq#1 mark this key should be filtered
INFO After TouchSeq#1, fingerprint event keycode=511 down filtered
DEBUG remove the filtered key-up event keyCode=66 up
DEBUG After TouchSeq#1, filter next AKEYCODE_KEYCODE_FINGERPRINT_FINGER_UP
INFO delayDispatchKey, touchSeq#2 check pending key=514 mPendingKey.touchSeq=0, no need to delay it
DEBUG During TouchSeq#2, process fingerprint event keycode=514 down
)");
}

// Nor why a finger was held back, let through or cancelled; of two, the lowest id is told first.
TEST_F(LogText, OfFingers) {
    phone.key(516);
    keep(phone.after(50ms).touch({finger(5).at(450, 2300), kOnSensor}));
    keep(phone.after(50ms).touch(kOnSensor.at(541, 2150)));
    phone.lift();
    phone.show({navigationBar()});
    keep(phone.touch(kOnSensor));
    keep(phone.touch(kOnSensor));
    keep(phone.touch(kOnSensor.at(650, 2200)));
    keep(phone.key(514));
    keep(phone.key(516));
    keep(phone.after(10ms).touch(kOnSensor.at(650, 2200)));
    phone.lift();
    phone.rotate(1);
    phone.key(516);
    keep(phone.after(10ms).touch(kOnSensor.flagged(kOnEdge)));
    EXPECT_EQ(
        log,
        R"(INFO TouchSeq#1, restraint current point(id=0, x=540, y=2200), onEdge=0, enrolling=0, identifying=0, FPRecently=1
INFO TouchSeq#1, restraint current point(id=5, x=450, y=2300), onEdge=0, enrolling=0, identifying=0, FPRecently=1
INFO compensate point(id=0, x=540, y=2200) replace point(541, 2150) and mark it nearby the FP
INFO TouchSeq#1, mark point(id=0, x=540, y=2200) nearby the FP, reason:compensate point
DEBUG TouchSeq#2, preferTouchNavigationBar, dispatch nearby FP touch point(id=0, x=540, y=2200)
INFO TouchSeq#2, mark point(id=0, x=540, y=2200) nearby the FP, reason:prefer dispatch to navigationbar and point not on edge
INFO a nearby FP finger may swipe along the X axis(xRange:110,yRange:0)
INFO finger may swipe over the fingerprint, report this fingerprint's event
DEBUG During TouchSeq#2, process fingerprint event keycode=514 down
DEBUG During TouchSeq#2, receive finger down on FP, last touch point(id=0, x=650, y=2200), filter area:[400,2100 ~ 680,2340]
INFO During touchSeq#2, pointer is touching, update the nearby FP point(id=0) timestamp
INFO a nearby FP finger may swipe along the X axis(xRange:110,yRange:0)
DEBUG During TouchSeq#2, new finger touch down on the FP, reset the wait state
INFO a nearby FP finger may swipe along the X axis(xRange:110,yRange:0)
INFO this touch may caused by swipe on FP sensor, cancel it
INFO TouchSeq#3, restraint current point(id=0, x=540, y=2200), onEdge=1, enrolling=0, identifying=0, FPRecently=1
)");
}

// Nor whose an identification was, and for how long.
TEST_F(LogText, OfIdentifications) {
    phone.key(517);
    keep(phone.after(10ms).touch(finger(0)));
    phone.lift();
    keep(phone.touch(finger(0)));
    keep(phone.at(61'700ms).touch(finger(0)));
    phone.key(518);
    phone.lift();
    keep(phone.touch(kOnSensor));
    phone.after(149ms).key(517);
    keep(phone.touch(kOnSensor));
    EXPECT_EQ(log,
              R"(DEBUG First finger touch down on TP in touchSeq#1 after starting indentify finger 10ms later, timeout=0
DEBUG New finger down on TP in touchSeq#2 but identifying finger in touchSeq#1, disaptch TP normally
DEBUG New finger down on TP in touchSeq#2 but identifying finger in touchSeq#1, disaptch TP normally
DEBUG Identify finger timeout, start identify fingerprint 1700ms ago
DEBUG Reset the IdentifyFPState in new touch touchSeq#3, identified 0ms ago
INFO TouchSeq#3, mark point(id=0, x=540, y=2200) nearby the FP, reason:point should not filter
DEBUG identify finger 149ms after finger touched down
INFO this touch may caused by identify finger, cancel it
)");
}

}  // namespace
