// Pointers that the touch driver flags, through the exports of the built plug-in.

#include "tests/support/Phone.h"

using namespace test;

namespace {

refhost::WindowDescription window(const std::string& component, bool token = true) {
    return {.name = "Window{77 u0 " + component + "}", .token = token};
}

const std::string kMail = "com.example.mail/.Inbox";
const std::string kCall = "com.android.incallui/com.android.incallui.InCallActivity";
const std::string kCamera = "com.zorvia.camera/com.zorvia.camera.controller.SecureCameraActivity";

// A cheek must not press buttons in a call; in other windows an abnormal touch may well be meant. An abnormal pointer
// asks about the window even where the stylus flag alone decides, and the log shows the answer; the secure camera is
// exempt silently.
TEST(AbnormalTouch, WhereItCancels) {
    using Case = std::tuple<size_t, uint32_t, refhost::WindowDescription, bool, std::string>;
    const auto call = window(kCall), goneCall = window(kCall, false), camera = window(kCamera), mail = window(kMail);
    const auto voip = window("com.tencent.mm/com.tencent.mm.plugin.voip.ui.VideoActivity");
    const auto video = window("com.tencent.mobileqq/com.tencent.av.ui.AVActivity");
    const std::string keyguardShows = "keyguard showing", inFront = "foreground window(";
    for (const auto& [cancels, flags, shown, keyguard, reason] :
         {Case{0, kAbnormal, mail, false, ""}, Case{1, kAbnormal, call, false, inFront + call.name + ")"},
          Case{1, kAbnormal, voip, false, inFront + voip.name + ")"},
          Case{1, kAbnormal, video, false, inFront + video.name + ")"}, Case{0, kAbnormal, goneCall, false, ""},
          Case{1, kAbnormal, goneCall, true, keyguardShows}, Case{0, kAbnormal, camera, true, ""},
          Case{0, kAbnormal, camera, false, ""}, Case{1, kStylusDirty, mail, false, ""},
          Case{1, kAbnormal | kStylusDirty, mail, false, ""},
          Case{1, kAbnormal | kStylusDirty, mail, true, keyguardShows},
          Case{0, ~(kAbnormal | kStylusDirty), call, true, ""}}) {
        Phone phone(Phone::Properties{});
        phone.show({shown}, keyguard);
        const Finger cheek = finger(3).at(10, 20).flagged(flags);
        EXPECT_EQ(phone.touch(cheek), Fingers{cheek}) << "this pass removes nothing";
        EXPECT_EQ(phone.cancels(), cancels) << shown.name << " " << keyguard << " " << flags;
        EXPECT_EQ(phone.log().size(), cancels + (reason.empty() ? 0 : 1)) << shown.name << " " << keyguard;
        EXPECT_EQ(phone.logged("DEBUG filtered as " + reason), !reason.empty()) << shown.name << " " << keyguard;
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
    EXPECT_EQ(phone.log(), Lines{"INFO Cancel abnormal touch seq for pointerCount=3, point(-7, 20), id=2, "
                                 "extraData=0x28000000"});
    phone.touch({hand, dirty});
    EXPECT_EQ(phone.cancels(), 0u);
    phone.lift();
    phone.touch(dirty);
    EXPECT_EQ(phone.cancels(), 1u) << "the next gesture";
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
// is cancelled again in the next frame. Hosts rely on the cancel coming for every such frame, and in the next touch.
TEST(AbnormalTouch, AnEmptiedFrameIsALiftOff) {
    for (const auto& [disabled, second] : {std::pair{"0", 1u}, {"1", 0u}}) {
        Phone phone({Phone::kSensorArea[0], {"persist.zqaft.disable_abt", disabled}});
        for (int touch = 0; touch < 2; ++touch) {
            phone.after(5s).touch(finger(0).at(540, 2200));
            phone.after(50ms).key(517);
            EXPECT_EQ(phone.after(8ms).touch(finger(0).at(540, 2200)), kNone);
            EXPECT_EQ(phone.cancels(), 1u) << touch;
            phone.after(8ms).touch(finger(0).at(540, 2200));
            EXPECT_EQ(phone.cancels(), second);
            phone.lift();
        }
    }
}

}  // namespace
