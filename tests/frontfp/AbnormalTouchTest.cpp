// Pointers that the touch driver flags, through the exports of the built plug-in.

#include "tests/support/Phone.h"

namespace test {
namespace {

refhost::WindowDescription window(const std::string& component, bool token = true) {
    return {.name = "Window{77 u0 " + component + "}", .token = token};
}

const std::string kCall = "com.android.incallui/com.android.incallui.InCallActivity";
const std::string kCamera = "com.zorvia.camera/com.zorvia.camera.controller.SecureCameraActivity";

// A cheek must not press buttons in a call; in other windows an abnormal touch may well be meant.
TEST(AbnormalTouch, WhereItCancels) {
    struct Case {
        uint32_t flags;
        std::string component;
        bool token;
        bool keyguard;
        bool cancels;
    };
    for (const Case& c :
         {Case{kAbnormal, "com.example.mail/.Inbox", true, false, false}, Case{kAbnormal, kCall, true, false, true},
          Case{kAbnormal, "com.tencent.mm/com.tencent.mm.plugin.voip.ui.VideoActivity", true, false, true},
          Case{kAbnormal, "com.tencent.mobileqq/com.tencent.av.ui.AVActivity", true, false, true},
          Case{kAbnormal, kCall, false, false, false}, Case{kAbnormal, kCall, false, true, true},
          Case{kAbnormal, kCamera, true, true, false}, Case{kAbnormal, kCamera, true, false, false},
          Case{kStylusDirty, "com.example.mail/.Inbox", true, false, true},
          Case{kAbnormal | kStylusDirty, "com.example.mail/.Inbox", true, false, true},
          Case{~(kAbnormal | kStylusDirty), kCall, true, true, false}}) {
        Phone phone(Phone::Properties{});
        phone.show({window(c.component, c.token)}, c.keyguard);
        const Finger cheek = finger(3).at(10, 20).flagged(c.flags);
        EXPECT_EQ(phone.touch(cheek), Fingers{cheek}) << "this pass removes nothing";
        EXPECT_EQ(phone.cancels(), c.cancels ? 1u : 0u) << c.component << " " << c.keyguard << " " << c.flags;
    }
}

// The first flagged pointer cancels, once for the gesture, and the log gives its whole flag word.
TEST(AbnormalTouch, OncePerGesture) {
    Phone phone(Phone::Properties{{"ro.config.zq_fold_disp", "1"}});
    const Finger hand = finger(0).at(500, 500);
    const Finger dirty = finger(2).at(-7, 20).flagged(kAbnormal | kStylusDirty);
    phone.touch({hand, finger(1).flagged(kAbnormal).hovering()});
    EXPECT_EQ(phone.cancels(), 0u) << "a hovering pointer";
    phone.touchWithoutMapper(dirty);
    phone.touch(finger(4).flagged(kAbnormal));
    EXPECT_EQ(phone.cancels(), 1u) << "a fold display: in any window";
    phone.lift();
    phone.touch({hand, dirty, finger(5).flagged(kAbnormal)});
    EXPECT_EQ(phone.cancels(), 1u);
    EXPECT_EQ(phone.said(), std::vector{std::string("Cancel abnormal touch seq for pointerCount=3, point(-7, 20), "
                                                    "id=2, extraData=0x28000000")});
    phone.touch({hand, dirty});
    EXPECT_EQ(phone.cancels(), 0u);
    phone.lift();
    phone.touch(dirty);
    EXPECT_EQ(phone.cancels(), 1u) << "the next gesture";
}

// Each abnormal pointer asks about the window, and the log shows it, even where the pen's dirt alone decides.
TEST(AbnormalTouch, AsksAboutTheWindowEachTime) {
    Phone phone(Phone::Properties{});
    phone.show({window(kCamera)}, true);
    phone.touch({finger(0).flagged(kAbnormal), finger(1).flagged(kAbnormal)});
    EXPECT_EQ(phone.said(), std::vector<std::string>{}) << "the secure camera is exempt, silently";
    phone.show({window("x")}, true);
    phone.touch({finger(0).flagged(kStylusDirty | kAbnormal)});
    EXPECT_TRUE(phone.said("filtered as keyguard showing"));
}

// A user who has switched it off is not cancelled; numbers are read as far as they are numbers.
TEST(AbnormalTouch, CanBeSwitchedOff) {
    for (const auto& [value, cancels] : {std::pair{"1", 0u}, {"7", 0u}, {"-1", 0u}, {"0", 1u}, {"", 1u}, {"abc", 1u}}) {
        Phone phone(Phone::Properties{{"persist.zqaft.disable_abt", value}});
        phone.touch(finger(0).flagged(kStylusDirty));
        EXPECT_EQ(phone.cancels(), cancels) << value;
    }
}

// When the touch filter cancels and empties a frame, the pass after it takes that for a lift-off: a finger that stays
// is cancelled again in the next frame. Hosts rely on the cancel coming for every such frame.
TEST(AbnormalTouch, AnEmptiedFrameIsALiftOff) {
    for (const auto& [disabled, second] : {std::pair{"0", 1u}, {"1", 0u}}) {
        Phone phone(Phone::Properties{{"ro.zqaft.tpfp.filter_area", "400,2100,680,2340"},
                                      {"persist.zqaft.disable_abt", disabled}});
        phone.touch(finger(0).at(540, 2200));
        phone.after(50ms).key(517);
        EXPECT_EQ(phone.after(8ms).touch(finger(0).at(540, 2200)), kNone);
        EXPECT_EQ(phone.cancels(), 1u);
        phone.after(8ms).touch(finger(0).at(540, 2200));
        EXPECT_EQ(phone.cancels(), second);
    }
}

}  // namespace
}  // namespace test
