// The filter's lines as they stand in a phone's log: engineers search for them, and the tool reads them.

#include "tests/support/Phone.h"

namespace test {
namespace {

using Lines = std::vector<std::string>;

const Finger kOnSensor = finger(0).at(540, 2200);

// A text, a number's place, a priority or an order that changes makes every search and every script miss the decision.
TEST(LogText, OfKeys) {
    Phone phone;
    phone.rotate(1);
    phone.touch(finger(2).at(540, 1000));
    phone.key(501);
    EXPECT_EQ(phone.log(), (Lines{"INFO During TouchSeq#1 point(540, 1000) in the central area",
                                  "INFO one or more fingers touching on centeral area, filter this fingerprint's event",
                                  "INFO During TouchSeq#1, fingerprint event keycode=501 down filtered"}));
    phone.key(501, false);
    EXPECT_EQ(phone.log(), (Lines{"DEBUG remove the filtered key-up event keyCode=501 up"}));
    phone.key(516);
    EXPECT_EQ(
        phone.log(),
        (Lines{"DEBUG During TouchSeq#1, receive finger down on FP, last touch point(id=2, x=540, y=1000), filter "
               "area:[400,2100 ~ 680,2340]",
               "DEBUG During TouchSeq#1, new finger touch down on the FP, reset the wait state"}));
    phone.key(517);
    EXPECT_EQ(phone.log(), (Lines{"DEBUG Start identify finger in touchSeq#1, mStateTime=60000ms"}));
    phone.key(519);
    EXPECT_EQ(phone.log(), (Lines{"INFO start enroll the fingerprint"}));
    phone.lift();
    phone.rotate(0);
    phone.after(5s).touch(kOnSensor);
    phone.after(60ms).key(513);
    EXPECT_EQ(phone.log(), (Lines{"INFO delayDispatchKey delay dispatch the key:513",
                                  "INFO During TouchSeq#2, fingerprint event keycode=513 down filtered"}));
    phone.after(60ms).lift();
    EXPECT_EQ(phone.log(), (Lines{"INFO handlePendingKey, force re-dispatch keyCode=513",
                                  "INFO handlePendingKey, re-dispatch the pending keycode=513 down and up"}));
}

// The same of fingers: two of them, told from the lowest id up.
TEST(LogText, OfFingers) {
    Phone phone;
    phone.key(516);
    phone.after(50ms).touch({finger(5).at(450, 2300), kOnSensor});
    EXPECT_EQ(phone.log(),
              (Lines{"INFO TouchSeq#1, restraint current point(id=0, x=540, y=2200), onEdge=0, enrolling=0, "
                     "identifying=0, FPRecently=1",
                     "INFO TouchSeq#1, restraint current point(id=5, x=450, y=2300), onEdge=0, enrolling=0, "
                     "identifying=0, FPRecently=1"}));
    phone.after(50ms).touch(kOnSensor.at(541, 2150));
    EXPECT_EQ(phone.log(),
              (Lines{"INFO compensate point(id=0, x=540, y=2200) replace point(541, 2150) and mark it nearby the FP",
                     "INFO TouchSeq#1, mark point(id=0, x=540, y=2200) nearby the FP, reason:compensate point"}));
    phone.lift();
    phone.show({navigationBar()});
    phone.touch(kOnSensor);
    EXPECT_EQ(phone.log(),
              (Lines{"DEBUG TouchSeq#2, preferTouchNavigationBar, dispatch nearby FP touch point(id=0, x=540, y=2200)",
                     "INFO TouchSeq#2, mark point(id=0, x=540, y=2200) nearby the FP, reason:prefer dispatch to "
                     "navigationbar and point not on edge"}));
    phone.touch(kOnSensor);
    phone.touch(kOnSensor.at(650, 2200));
    phone.key(514);
    phone.after(10ms).touch(kOnSensor.at(650, 2200));
    EXPECT_EQ(phone.log(), (Lines{"INFO a nearby FP finger may swipe along the X axis(xRange:110,yRange:0)",
                                  "INFO this touch may caused by swipe on FP sensor, cancel it"}));
    phone.lift();
    phone.show({{.name = "com.tencent.mobileqq/com.tencent.av.ui.AVActivity"}});
    phone.touch(finger(1).at(9, 8).flagged(kAbnormal));
    EXPECT_EQ(phone.log(),
              (Lines{"DEBUG filtered as foreground window(com.tencent.mobileqq/com.tencent.av.ui.AVActivity)",
                     "INFO Cancel abnormal touch seq for pointerCount=1, point(9, 8), id=1, "
                     "extraData=0x08000000"}));
}

}  // namespace
}  // namespace test
