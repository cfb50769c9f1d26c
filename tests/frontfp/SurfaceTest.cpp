// The surface, the navigation bar and the properties, through the exports of the built plug-in.

#include "platform/control/Properties.h"
#include "tests/support/Phone.h"

using namespace test;

namespace {

/// Whether a finger at this place would be held back, the sensor having just reported one.
bool heldBack(Phone& phone, int32_t x, int32_t y) {
    phone.key(516);
    const bool held = phone.after(50ms).touch(finger(0).at(x, y)).empty();
    phone.lift();
    return held;
}

// An area given by its size lies centred on the bottom edge, for odd sizes too; a wrong half shifts the whole filter.
TEST(Surface, AnAreaGivenByItsSize) {
    using Case = std::tuple<const char*, int32_t, int32_t, int32_t, int32_t, int32_t>;
    for (const auto& [size, width, height, left, top, right] :
         {Case{"200,150", 1080, 2340, 440, 2190, 640}, Case{"201,150", 1081, 2341, 440, 2191, 640}}) {
        Phone phone(Phone::Properties{{"ro.zqaft.tpfp.filter_area", size}});
        phone.surface(width, height, 0);
        EXPECT_TRUE(heldBack(phone, left, top) && heldBack(phone, right, height)) << width;
        EXPECT_FALSE(heldBack(phone, left - 1, top) || heldBack(phone, right + 1, top)) << width;
        EXPECT_FALSE(heldBack(phone, left, top - 1)) << width;
    }
}

// A panel that cannot hold the area switches the filter off for good: it must not come back on the next rotation.
TEST(Surface, AnAreaThatDoesNotFitEndsTheFilter) {
    for (const auto& [width, height] : {std::pair{679, 2340}, {1080, 2339}, {-1, -1}}) {
        Phone phone;
        phone.surface(width, height, 1);
        EXPECT_EQ(phone.log(), Lines{"ERROR the filter area configure exceeds the limits!"});
        phone.surface(1080, 2340, 0);
        EXPECT_EQ(phone.log(), Lines{});
        EXPECT_FALSE(heldBack(phone, 540, 2200));
        EXPECT_TRUE(phone.key(516, true, Phone::kPanel)) << "the rule of a filter that is off";
    }
    Phone phone;
    phone.surface(680, 2340, 0);
    EXPECT_TRUE(heldBack(phone, 540, 2200)) << "680 x 2340 just holds it";
}

/// Whether a phone takes this window for a navigation bar next to the sensor.
bool isBar(const refhost::WindowDescription& window, int32_t orientation = 0) {
    Phone phone;
    phone.rotate(orientation);
    phone.show({window});
    return phone.log() == Lines{"INFO processInputWindow prefer touch navigationbar"};
}

// A bar elsewhere would get the sensor's touches, or the one next to it would not, in each rotation.
TEST(Surface, TheNavigationBarNextToTheSensor) {
    using Frame = std::array<int32_t, 4>;
    using Case = std::tuple<int32_t, Frame, bool>;
    for (const auto& [orientation, frame, next] :
         {Case{0, Frame{0, 2339, 0, 0}, true}, Case{0, Frame{0, 2340, 0, 0}, false},
          Case{1, Frame{2339, 9999, 0, 0}, true}, Case{1, Frame{2340, 0, 0, 0}, false},
          Case{2, Frame{0, 0, 0, 2339}, true}, Case{2, Frame{0, 10, 0, 126}, false},
          Case{2, Frame{0, 0, 0, 2340}, false}, Case{3, Frame{0, 0, 0, 0}, false}, Case{4, Frame{0, 0, 0, 0}, false}}) {
        refhost::WindowDescription bar = navigationBar();
        bar.frame = frame;
        EXPECT_EQ(isBar(bar, orientation), next) << orientation << ": " << frame[0] << " " << frame[1];
    }
}

// Only a window with the bar's whole name and type is the bar, however long the name, and whatever has become of it.
TEST(Surface, NamesOfTheNavigationBar) {
    const std::string million(1'000'000, 'a');
    const std::string digits(1'000'000, '7');
    for (const std::string& name :
         {std::string("Window{1f3a0c2 u0 NavigationBar}"), std::string("Window{1\tu10\vNavigationBar}"),
          "Window{" + million + " u" + digits + " NavigationBar}"}) {
        EXPECT_TRUE(isBar({.name = name, .token = false, .type = 2019})) << name.substr(0, 40);
        EXPECT_FALSE(isBar({.name = name, .type = 2018}));
        EXPECT_FALSE(isBar({.name = name + " ", .type = 2019}));
        EXPECT_FALSE(isBar({.name = "x" + name, .type = 2019}));
    }
    for (const std::string& name :
         {std::string("Window{1F u0 NavigationBar}"), std::string("Window{ u0 NavigationBar}"),
          std::string("Window{1 ua NavigationBar}"), "Window{1 u" + million + " NavigationBar}", "Window{" + million,
          "Window{1 u0 Navigation" + million + "Bar}"}) {
        EXPECT_FALSE(isBar({.name = name, .type = 2019})) << name.substr(0, 40);
    }
}

// The bar's coming and going is told once each, and a list without it changes nothing.
TEST(Surface, TheNavigationBarComesAndGoes) {
    Phone phone;
    phone.show({navigationBar()});
    phone.show({navigationBar()});
    EXPECT_EQ(phone.log(), Lines{});
    phone.show({});
    phone.show({{.name = "Window{2 u0 Dialog}"}});
    phone.show({navigationBar(), navigationBar(false)});
    EXPECT_EQ(phone.log(), Lines{"INFO processInputWindow navigationbar invisible, not prefer touch navigationbar"});
    phone.show({navigationBar(false)});
    EXPECT_EQ(phone.log(), Lines{});
}

// The first call reads both properties and says so, in this order, before the filter object is made; later ones do not.
TEST(Properties, AreReadOnceAndInOrder) {
    const std::string backwards = "680,2100,400,2340";
    Phone phone(Phone::Properties{{"ro.zqaft.tpfp.filter_area", backwards}, {"ro.config.zq_fold_disp", "0"}});
    EXPECT_EQ(phone.log(), (Lines{"ERROR invalid config value:" + backwards, "INFO enabledAbt:true"}));
    aftplatform::properties::set("ro.zqaft.tpfp.filter_area", "400,2100,680,2340");
    phone.lift();
    EXPECT_EQ(phone.log(), Lines{"INFO version: 1.2, filterAllWindow: true"});
    EXPECT_FALSE(heldBack(phone, 540, 2200));
}

}  // namespace
