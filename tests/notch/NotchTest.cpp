// The notch band, through the exports of the built plug-in.

#include <limits>

#include "tests/support/Phone.h"

using namespace test;

namespace {

const Phone::Properties kNotch = {{"ro.config.zq_notch_size", "7,80,3,4"}};
const Finger kThumb = finger(0).at(540, 0);
const Finger kOutside = finger(0).at(540, 81);

/// A phone whose notch band is 80 high, held in landscape.
struct Landscape : Phone {
    explicit Landscape(const Properties& properties = kNotch, const Devices& more = {}) : Phone(properties, more) {
        rotate(1);
    }
};

/// A window at these places of the display, marked as using the notch's.
refhost::WindowDescription game(const std::array<int32_t, 4>& frame, bool visible = true, bool marked = true) {
    return {.name = "Window{9a1 u0 game}", .frame = frame, .visible = visible, .notchArea = marked};
}

// One row too few and a hand at the notch acts; one too many and what stands beside it is dead.
TEST(Notch, EdgesOfTheBand) {
    using Case = std::tuple<std::string, int32_t, bool>;
    for (const auto& [height, y, removed] :
         {Case{"80", -1, false}, Case{"80", 0, true}, Case{"80", 80, true}, Case{"80", 81, false}, Case{"0", -1, false},
          Case{"0", 0, true}, Case{"0", 1, false}, Case{"-5", 0, false}, Case{"-5", -3, false},
          Case{"-5", -5, false}}) {
        Landscape phone(Phone::Properties{{"ro.config.zq_notch_size", "7," + height + ",3,4"}});
        EXPECT_EQ(phone.touch(kThumb.at(540, y)).empty(), removed) << height << ": " << y;
    }
}

// A property that is not understood, or a panel that has no notch, must not cost anybody a touch; the log says why.
TEST(Notch, WhatThePropertiesSay) {
    const std::string bad = "INFO Device has no valid notch prop:", whole = "INFO Device is not a fold device:";
    const std::string good = "INFO notch height:80", folds = "INFO fold part width:0";
    using Case = std::tuple<std::string, std::string, std::string, bool, std::string, std::string>;
    for (const auto& [notch, fold, panel, acts, notchLine, foldLine] :
         {Case{"7,80,3,4", "", "touchpanel", true, good, whole},
          Case{"7,80,3,4,5", "1,0,2,3,4", "touchpanel", true, good, whole + "1,0,2,3,4"},
          Case{"7,80,3", "1,0,2,3,4,5", "zorvia,ts_kit", false, bad + "7,80,3", folds},
          Case{"", "", "touchpanel", false, bad, whole},
          Case{"7,80,3,4", "0,9,2,3,4,5", "touchpanel", true, good, "INFO fold part width:9"},
          Case{"7,80,3,4", "1,0,2,3,4,5,6", "touchpanel", false, good, folds},
          Case{"7,80,3,4", "1,0,2,3,4,5", "zorvia,ts_kit", true, good, folds},
          Case{"7,80,3,4", "1,0,2,3,4,5", "a zorvia,ts_kit2", true, good, folds},
          Case{"7,80,3,4", "1,0,2,3,4,5", "Zorvia,ts_kit", false, good, folds},
          Case{"7,80,3,4", "1,0,2,3,4,5", "zorvia,ts_ki", false, good, folds}}) {
        Phone phone({{"ro.config.zq_notch_size", notch}, {"ro.config.zq_fold_disp", fold}}, {{8, panel}});
        EXPECT_EQ(phone.log("ZqNotchAftProcessor"), (std::vector{notchLine, foldLine}));
        phone.on(8).rotate(1);
        EXPECT_EQ(phone.touch(kThumb).empty(), acts) << notch << "; " << fold << "; " << panel;
    }
}

// A pad plugged in, a panel never set up, a host that names none, a phone held upright: no touches are taken there.
TEST(Notch, WhereItActs) {
    Phone phone(kNotch, {{0, ""}, {8, "", true}, {-2, ""}, {9, ""}});
    EXPECT_EQ(phone.on(9).touch(kThumb), Fingers{kThumb});
    using Case = std::tuple<int32_t, int32_t, bool>;
    for (const auto& [device, orientation, removed] :
         {Case{0, 1, true}, Case{8, 1, false}, Case{-2, 1, false}, Case{3, 0, false}, Case{3, 1, true},
          Case{3, 2, false}, Case{3, 3, true}, Case{3, 0, false}}) {
        phone.on(device).rotate(orientation);
        EXPECT_EQ(phone.touch(kThumb).empty(), removed) << device << ", " << orientation;
    }
    phone.surface(refhost::ConfigureSurface{.device = {}, .orientation = 1});
    EXPECT_EQ(phone.touch(kThumb), Fingers{kThumb}) << "still upright";
    phone.rotate(1);
    EXPECT_EQ(phone.touchWithoutMapper(kThumb), Fingers{kThumb});
}

// A button at a window's edge is dead, or one beside it alive, if one term is off: the window here is one pixel. Scales
// beyond all that can be shown end at its corner.
TEST(Notch, WhereAFingerIsOnTheDisplay) {
    constexpr float kBig = 16777216;  // floats above it leave out every other whole number
    constexpr int32_t kOdd = 16777217;
    constexpr int64_t kMin = std::numeric_limits<int32_t>::min(), kMax = std::numeric_limits<int32_t>::max();
    struct Case {
        refhost::ConfigureSurface surface;
        int64_t x, y;
    };
    for (const Case& c :
         {Case{{3, 0, 0, 1, {2, 3, 5, 7, 9, 13}, {9, 40}, {17, 91}, {3, 0.5F}, {10, 20}}, 30, 91},
          Case{{3, 0, 0, 3, {2, 3, 5, 7, 9, 13}, {9, 40}, {17, 91}, {3, 0.5F}, {10, 20}}, 46, 22},
          Case{{3, 0, 0, 1, {2, 3, 5, 7, 9, 13}, {9, 40}, {17, 91}, {3, 0.5F}, {10, -11}}, 0, 91},
          Case{{3, 0, 0, 1, {kBig, 0.5F, 1, kBig, 0.5F, 1}, {0, kOdd}, {kOdd, 0}, {1, 1}, {0, 0}}, 0, 0},
          Case{{3, 0, 0, 3, {kBig, 0.5F, 1, kBig, 0.5F, 1}, {kOdd, 0}, {0, kOdd}, {1, 1}, {0, 0}}, 0, 0},
          Case{{3, 0, 0, 1, {1, 0, 0, 0, 1, 0}, {0, 9}, {0, 9}, {1e30F, -1e30F}, {0, 0}}, kMin, kMax},
          Case{{3, 0, 0, 1, {1, 0, 0, 0, 1, 0}, {0, 9}, {0, 9}, {-1e30F, 1e30F}, {0, 0}}, kMax, kMin}}) {
        Phone phone(kNotch);
        phone.surface(c.surface);
        for (const auto& [dx, dy] : {std::pair{0, 0}, {1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
            const auto x = static_cast<int32_t>(c.x + dx), y = static_cast<int32_t>(c.y + dy);
            phone.show({game({x, y, x, y})});
            EXPECT_EQ(phone.touch(kThumb.at(1, 2)).size(), dx == 0 && dy == 0 ? 1u : 0u)
                << c.x << ", " << c.y << ", the window at " << x << ", " << y;
            phone.lift();
        }
    }
}

// Games place buttons beside the notch and say so; a window that is hidden, gone or silent has no say.
TEST(Notch, WhichWindowsGetTheBand) {
    Landscape phone;
    for (const auto& [visible, marked] : {std::pair{true, false}, {false, true}, {false, false}, {true, true}}) {
        phone.show({navigationBar(), game({0, 0, 2339, 1079}, visible, marked)});
        EXPECT_EQ(phone.touch(kThumb).size(), visible && marked ? 1u : 0u) << visible << marked;
    }
    phone.show({});
    EXPECT_EQ(phone.touch(kThumb), Fingers{kThumb}) << "vanished under the finger with the window";
    phone.lift();
    EXPECT_EQ(phone.touch(kThumb), kNone);
}

// A finger that apps have seen must not vanish before all are up; what another panel does, or portrait, is no end.
TEST(Notch, AFingerOnceSeenStays) {
    Landscape phone(kNotch, {{8, ""}, {9, ""}});
    const Finger other = finger(1).at(100, 80), beside = finger(2).at(1, 81);
    EXPECT_EQ(phone.touch({kThumb, other.hovering(), beside, finger(3)}), Fingers{beside}) << "a hand over the notch";
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

// A frame that an earlier filter has emptied is a lift-off here: what was let through before is judged again.
TEST(Notch, AnEmptiedFrameIsALiftOff) {
    Landscape phone(Phone::Properties{kNotch[0], {"ro.config.zq_hall_prop", "1"}});
    phone.start();
    phone.coverMoves(0);
    phone.touch(kOutside);
    EXPECT_EQ(phone.touch(kThumb), Fingers{kThumb});
    phone.coverMoves(1);
    EXPECT_EQ(phone.touch(kThumb), kNone);
    EXPECT_EQ(phone.after(3s).touch(kThumb), kNone) << "the cover is at rest again, the thumb in the band";
    EXPECT_EQ(phone.touch(kOutside), Fingers{kOutside});
}

}  // namespace
