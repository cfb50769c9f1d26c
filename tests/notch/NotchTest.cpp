// The notch band, through the exports of the built plug-in.

#include <array>
#include <cmath>
#include <limits>

#include "tests/support/Phone.h"

namespace test {
namespace {

const Phone::Properties kNotch = {{"ro.config.zq_notch_size", "7,80,3,4"}};
const Finger kThumb = finger(0).at(540, 40);
const Finger kOutside = finger(0).at(540, 81);

/// A phone whose notch band is 80 high, held in landscape.
struct Landscape : Phone {
    explicit Landscape(const Devices& more = {}) : Phone(kNotch, more) { rotate(1); }
};

/// A game's window, marked as using the place beside the notch.
refhost::WindowDescription game(const std::array<int32_t, 4>& frame = {0, 0, 2339, 1079}) {
    return {.name = "Window{9a1 u0 com.example.game/.Main}", .frame = frame, .notchArea = true};
}

// One row too few and a hand at the notch acts; one too many and what stands beside it is dead.
TEST(Notch, EdgesOfTheBand) {
    struct Case {
        std::string height;
        int32_t y;
        bool removed;
    };
    for (const Case& c : {Case{"80", -1, false}, Case{"80", 0, true}, Case{"80", 80, true}, Case{"80", 81, false},
                          Case{"0", -1, false}, Case{"0", 0, true}, Case{"0", 1, false}, Case{"-5", 0, false},
                          Case{"-5", -3, false}, Case{"-5", -5, false}}) {
        Phone phone(Phone::Properties{{"ro.config.zq_notch_size", "7," + c.height + ",3,4"}});
        phone.rotate(1);
        EXPECT_EQ(phone.touch(kThumb.at(540, c.y)).empty(), c.removed) << c.height << ": " << c.y;
    }
}

// A property that is not understood, or a panel that has no notch, must not cost anybody a touch; the log says why.
TEST(Notch, WhatThePropertiesSay) {
    struct Case {
        std::string notch, fold, panel;
        bool acts;
        std::string notchLine, foldLine;
    };
    const std::string notched = "notch height:80", whole = "fold part width:0";
    for (const Case& c :
         {Case{"7,80,3,4", "", "touchpanel", true, notched, "Device is not a fold device:"},
          Case{"7,80,3,4,5", "1,0,2,3,4", "touchpanel", true, notched, "Device is not a fold device:1,0,2,3,4"},
          Case{"7,80,3", "1,0,2,3,4,5", "zorvia,ts_kit", false, "Device has no valid notch prop:7,80,3", whole},
          Case{"7,80,3,x", "", "touchpanel", false, "Device has no valid notch prop:7,80,3,x",
               "Device is not a fold device:"},
          Case{"", "", "touchpanel", false, "Device has no valid notch prop:", "Device is not a fold device:"},
          Case{"7,80,3,4", "0,9,2,3,4,5", "touchpanel", true, notched, "fold part width:9"},
          Case{"7,80,3,4", "1,0,2,3,4,5,6", "touchpanel", false, notched, whole},
          Case{"7,80,3,4", "1,0,2,3,4,5", "zorvia,ts_kit", true, notched, whole},
          Case{"7,80,3,4", "1,0,2,3,4,5", "a zorvia,ts_kit2", true, notched, whole},
          Case{"7,80,3,4", "1,0,2,3,4,5", "Zorvia,ts_kit", false, notched, whole},
          Case{"7,80,3,4", "1,0,2,3,4,5", "zorvia,ts_ki", false, notched, whole}}) {
        Phone phone({{"ro.config.zq_notch_size", c.notch}, {"ro.config.zq_fold_disp", c.fold}}, {{8, c.panel}});
        EXPECT_EQ(phone.log("ZqNotchAftProcessor"), (std::vector{"INFO " + c.notchLine, "INFO " + c.foldLine}));
        phone.on(8).rotate(1);
        EXPECT_EQ(phone.touch(kThumb).empty(), c.acts) << c.notch << "; " << c.fold << "; " << c.panel;
        EXPECT_TRUE(phone.log("ZqNotchAftProcessor").empty());
    }
}

// A mouse pad plugged in, a panel that was never set up, or a host that names none: nobody's touches are taken there.
TEST(Notch, WhichDevicesHaveIt) {
    Phone phone(kNotch, {{0, ""}, {8, "", true}, {-2, ""}, {9, ""}});
    for (const auto& [device, acts] : {std::pair{0, true}, {8, false}, {-2, false}}) {
        phone.on(device).rotate(1);
        EXPECT_EQ(phone.touch(kThumb).empty(), acts) << device;
    }
    EXPECT_EQ(phone.on(9).touch(kThumb), Fingers{kThumb});
    phone.on(Phone::kPanel).surface(refhost::ConfigureSurface{.device = {}, .orientation = 1});
    EXPECT_EQ(phone.touch(kThumb), Fingers{kThumb}) << "still in portrait";
    phone.rotate(1);
    EXPECT_EQ(phone.touchWithoutMapper(kThumb), Fingers{kThumb});
}

// In portrait the band is the top of the screen, where status bars are pulled down.
TEST(Notch, OnlyInLandscape) {
    Phone phone(kNotch);
    for (const auto& [orientation, removed] : {std::pair{0, false}, {1, true}, {2, false}, {3, true}, {0, false}}) {
        phone.rotate(orientation);
        EXPECT_EQ(phone.touch(kThumb).empty(), removed) << orientation;
    }
}

// A button at the window's edge is dead, or one beside it alive, if one term is off: the window here is one pixel.
TEST(Notch, WhereAFingerIsOnTheDisplay) {
    using Surface = refhost::ConfigureSurface;
    const auto turned = [](Surface surface, int32_t orientation) {
        surface.orientation = orientation;
        return surface;
    };
    const Surface plain{.device = Phone::kPanel, .rawX = {0, 1079}, .rawY = {0, 2339}};
    Surface crooked{.device = Phone::kPanel,
                    .calibration = {2, 3, 5, 7, 11, 13},
                    .rawX = {100, 400},
                    .rawY = {200, 900},
                    .scale = {3, 0.5F},
                    .translate = {1000, 2000}};
    Surface below = crooked;
    below.translate[1] = -52;         // -0.5 is cut to 0
    constexpr float kBig = 16777216;  // floats above it leave out every other whole number
    const Surface coarse{.device = Phone::kPanel,
                         .calibration = {kBig, 1, 1, kBig, 1, 1},
                         .rawX = {16777217, 16777217},
                         .rawY = {16777217, 16777217}};
    struct Case {
        Surface surface;
        Finger thumb;
        int32_t x, y;
    };
    for (const Case& c :
         {Case{turned(plain, 1), kThumb.at(100, 50), 50, 979}, Case{turned(plain, 3), kThumb.at(100, 50), 2289, 100},
          Case{turned(crooked, 1), kThumb.at(10, 20), 2051, 1945},
          Case{turned(crooked, 3), kThumb.at(10, 20), 2298, 955}, Case{turned(below, 1), kThumb.at(10, 20), 0, 1945},
          Case{turned(coarse, 1), kThumb.at(1, 1), 0, 0}, Case{turned(coarse, 3), kThumb.at(1, 1), 0, 0}}) {
        Phone phone(kNotch);
        phone.surface(c.surface);
        for (const auto& [dx, dy] : {std::pair{0, 0}, {1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
            phone.show({game({c.x + dx, c.y + dy, c.x + dx, c.y + dy})});
            EXPECT_EQ(phone.touch(c.thumb).size(), dx == 0 && dy == 0 ? 1u : 0u)
                << c.x << ", " << c.y << "; window at " << dx << ", " << dy;
            phone.lift();
        }
    }
}

// A host's wild scales end at the corner of all that can be shown, on every machine the same.
TEST(Notch, BeyondEveryDisplay) {
    constexpr int32_t kMin = std::numeric_limits<int32_t>::min(), kMax = std::numeric_limits<int32_t>::max();
    Phone phone(kNotch);
    phone.surface(refhost::ConfigureSurface{
        .device = Phone::kPanel, .orientation = 1, .rawX = {0, 1079}, .scale = {1e30F, -INFINITY}});
    phone.show({game({kMin + 1, 0, kMax, kMax}), game({kMin, 0, kMin, kMax - 1})});
    EXPECT_EQ(phone.touch(kThumb), kNone);
    phone.show({game({kMin, kMax, kMin, kMax})});
    EXPECT_EQ(phone.touch(kThumb), Fingers{kThumb});
}

// Games place buttons beside the notch and say so; a window that is hidden, gone or silent has no say.
TEST(Notch, WhichWindowsGetTheBand) {
    Landscape phone;
    for (const auto& [visible, marked] : {std::pair{true, true}, {true, false}, {false, true}, {false, false}}) {
        refhost::WindowDescription window = game();
        window.visible = visible;
        window.notchArea = marked;
        phone.show({navigationBar(), window});
        EXPECT_EQ(phone.touch(kThumb).size(), visible && marked ? 1u : 0u) << visible << marked;
        phone.lift();
    }
    phone.show({game()});
    EXPECT_EQ(phone.touch(kThumb), Fingers{kThumb});
    phone.show({});
    EXPECT_EQ(phone.touch(kThumb), Fingers{kThumb}) << "vanished under the finger with the window";
    phone.lift();
    EXPECT_EQ(phone.touch(kThumb), kNone);
}

// A finger that apps have seen must not vanish before all are up, and what another panel or portrait does is no end.
TEST(Notch, AFingerOnceSeenStays) {
    Landscape phone({{8, ""}, {9, ""}});
    const Finger other = finger(1).at(100, 80);
    EXPECT_EQ(phone.touch(kThumb), kNone);
    EXPECT_EQ(phone.touch(kOutside), Fingers{kOutside});
    EXPECT_EQ(phone.touch({other, kThumb}), Fingers{kThumb}) << "each by itself";
    phone.touch(other.at(100, -1));
    EXPECT_EQ(phone.touch({kThumb, other}), (Fingers{kThumb, other})) << "the same touch, although it was up meanwhile";
    phone.rotate(0);
    phone.lift();
    phone.on(9).lift();
    phone.on(Phone::kPanel).rotate(1);
    EXPECT_EQ(phone.touch(kThumb), Fingers{kThumb});
    phone.on(8).rotate(3);
    phone.lift();
    EXPECT_EQ(phone.on(Phone::kPanel).touch(kThumb), kNone) << "the touch of all panels has ended";
    phone.rotate(0);
    phone.touch(kOutside);
    phone.rotate(1);
    EXPECT_EQ(phone.touch(kThumb), kNone) << "seen in portrait";
}

// A hand over the notch is several fingers, touching or not.
TEST(Notch, TheWholeHand) {
    Landscape phone;
    const Finger beside = finger(1).at(1, 81);
    EXPECT_EQ(phone.touch({kThumb, finger(3).at(900, 80).hovering(), beside, finger(2)}), Fingers{beside});
}

// A frame that an earlier filter has emptied is a lift-off here: what was let through before is judged again.
TEST(Notch, AnEmptiedFrameIsALiftOff) {
    Phone phone(Phone::Properties{{"ro.config.zq_notch_size", "7,80,3,4"}, {"ro.config.zq_hall_prop", "1"}});
    phone.rotate(1);
    phone.start();
    phone.coverMoves(0);
    EXPECT_EQ(phone.touch(kOutside), Fingers{kOutside});
    EXPECT_EQ(phone.touch(kThumb), Fingers{kThumb});
    phone.coverMoves(1);
    EXPECT_EQ(phone.touch(kThumb), kNone);
    EXPECT_EQ(phone.after(3s).touch(kThumb), kNone) << "the cover is at rest again, the thumb in the band";
    EXPECT_EQ(phone.touch(kOutside), Fingers{kOutside});
}

}  // namespace
}  // namespace test
