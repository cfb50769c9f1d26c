// The surface, the navigation bar and the properties, through the exports of the built plug-in.

#include "tests/support/Phone.h"

namespace test {
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
    struct Case {
        int32_t width, height, left, top, right;
    };
    for (const Case& c : {Case{1080, 2340, 440, 2190, 640}, Case{1081, 2341, 440, 2191, 640}}) {
        Phone phone(Phone::Properties{{"ro.zqaft.tpfp.filter_area", "200,150"}});
        phone.surface(c.width, c.height, 0);
        EXPECT_TRUE(heldBack(phone, c.left, c.top));
        EXPECT_TRUE(heldBack(phone, c.right, c.height));
        EXPECT_FALSE(heldBack(phone, c.left - 1, c.top));
        EXPECT_FALSE(heldBack(phone, c.right + 1, c.top));
        EXPECT_FALSE(heldBack(phone, c.left, c.top - 1));
    }
}

// A panel that cannot hold the area switches the filter off for good: it must not come back on the next rotation.
TEST(Surface, AnAreaThatDoesNotFitEndsTheFilter) {
    for (const auto& [width, height] : {std::pair{679, 2340}, {1080, 2339}, {-1, -1}}) {
        Phone phone;
        phone.surface(width, height, 1);
        EXPECT_TRUE(phone.said("the filter area configure exceeds the limits!"));
        phone.surface(1080, 2340, 0);
        EXPECT_EQ(phone.said(), std::vector<std::string>{});
        EXPECT_FALSE(heldBack(phone, 540, 2200));
        EXPECT_TRUE(phone.key(516, true, Phone::kPanel)) << "the rule of a filter that is off";
    }
    Phone phone;
    phone.surface(680, 2340, 0);
    EXPECT_TRUE(heldBack(phone, 540, 2200)) << "680 x 2340 just holds it";
}

// Which windows count as a navigation bar next to the sensor, in each rotation.
TEST(Surface, TheNavigationBarNextToTheSensor) {
    struct Case {
        int32_t orientation;
        std::array<int32_t, 4> frame;
        bool preferred;
    };
    for (const Case& c :
         {Case{0, {0, 2339, 0, 0}, true}, Case{0, {0, 2340, 0, 0}, false}, Case{1, {2339, 9999, 0, 0}, true},
          Case{1, {2340, 0, 0, 0}, false}, Case{2, {0, 0, 0, 2339}, true}, Case{2, {0, 10, 0, 126}, false},
          Case{2, {0, 0, 0, 2340}, false}, Case{3, {0, 0, 0, 0}, false}, Case{4, {0, 0, 0, 0}, false}}) {
        Phone phone;
        phone.rotate(c.orientation);
        refhost::WindowDescription bar = navigationBar();
        bar.frame = c.frame;
        phone.show({bar});
        EXPECT_EQ(phone.said("processInputWindow prefer touch navigationbar"), c.preferred)
            << c.orientation << ": " << c.frame[0] << " " << c.frame[1] << " " << c.frame[3];
    }
}

// Only a window with the bar's whole name and type is the bar, however long the name, and whatever has become of it.
TEST(Surface, NamesOfTheNavigationBar) {
    const std::string million(1'000'000, 'a');
    const std::string digits(1'000'000, '7');
    struct Case {
        std::string name;
        int32_t type;
        bool token;
        bool isBar;
    };
    for (const Case& c :
         {Case{"Window{1f3a0c2 u0 NavigationBar}", 2019, false, true},
          Case{"Window{1f3a0c2 u0 NavigationBar}", 2018, true, false},
          Case{"Window{1f3a0c2 u0 NavigationBar} ", 2019, true, false},
          Case{"xWindow{1f3a0c2 u0 NavigationBar}", 2019, true, false},
          Case{"Window{1F u0 NavigationBar}", 2019, true, false}, Case{"Window{ u0 NavigationBar}", 2019, true, false},
          Case{"Window{1\tu10\vNavigationBar}", 2019, true, true},
          Case{"Window{1 ua NavigationBar}", 2019, true, false},
          Case{"Window{" + million + " u" + digits + " NavigationBar}", 2019, true, true},
          Case{"Window{1 u" + million + " NavigationBar}", 2019, true, false},
          Case{"Window{" + million, 2019, true, false},
          Case{"Window{1 u0 Navigation" + million + "Bar}", 2019, true, false}}) {
        Phone phone;
        phone.show({{.name = c.name, .token = c.token, .type = c.type}});
        EXPECT_EQ(phone.said("processInputWindow prefer touch navigationbar"), c.isBar) << c.name.substr(0, 40);
    }
}

// The bar's coming and going is told once each, and a list without it changes nothing.
TEST(Surface, TheNavigationBarComesAndGoes) {
    Phone phone;
    phone.show({navigationBar()});
    phone.show({navigationBar()});
    EXPECT_EQ(phone.said(), std::vector<std::string>{});
    phone.show({});
    phone.show({{.name = "Window{2 u0 Dialog}"}});
    refhost::WindowDescription hidden = navigationBar();
    hidden.visible = false;
    phone.show({navigationBar(), hidden});
    EXPECT_EQ(phone.said(),
              std::vector{std::string("processInputWindow navigationbar invisible, not prefer touch navigationbar")});
    phone.show({hidden});
    EXPECT_EQ(phone.said(), std::vector<std::string>{});
}

// The first call reads both properties and says so, in this order, before the filter object is made; later ones do not.
TEST(Properties, AreReadOnceAndInOrder) {
    refhost::TraceHeader header;
    header.properties = {{"ro.zqaft.tpfp.filter_area", "680,2100,400,2340"}, {"ro.config.zq_fold_disp", "0"}};
    refhost::Player player(header, ZQAFT_PLUGIN_UNDER_TEST);
    EXPECT_TRUE(player.play({2, {}, refhost::NotifyScreenState{}}).log.empty());
    EXPECT_TRUE(player.play({3, {}, refhost::SetProperty{"persist.zqaft.disable_abt", "0"}}).log.empty());
    const auto& first = player.play({4, {}, refhost::ProcessRawTouches{}});
    std::vector<std::string> texts;
    for (const auto& entry : first.log) {
        if (entry.tag == "ZqFrontFPAftProcessor") texts.push_back(std::to_string(entry.priority) + ": " + entry.text);
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"6: invalid config value:680,2100,400,2340", "4: enabledAbt:true",
                                               "4: version: 1.2, filterAllWindow: true"}));
    player.play({5, {}, refhost::SetProperty{"ro.zqaft.tpfp.filter_area", "400,2100,680,2340"}});
    EXPECT_TRUE(player.play({6, {}, refhost::ProcessRawTouches{}}).log.empty());
}

}  // namespace
}  // namespace test
