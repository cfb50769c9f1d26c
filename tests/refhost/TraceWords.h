#pragma once

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "refhost/trace/Trace.h"
#include "tests/support/Finger.h"

namespace refhost {

/// Panels 3 and 6 of 1000 x 2000, the area 400, 1800 to 600, 2000, in landscape a notch of 100 on panel 3, a slide
/// cover.
inline TraceHeader headerOfWords() {
    TraceHeader header;
    header.properties = {{"ro.zqaft.tpfp.filter_area", "400,1800,600,2000"}, {"ro.config.zq_hall_prop", "1"}};
    header.properties.emplace_back("ro.config.zq_notch_size", "0,100,0,0");
    header.devices = {{3, "panel"}, {4, "fingerprint"}, {6, "second"}};
    header.sensors = {{65557, 7}, {3, 9}};
    return header;
}

/// Lines of words, each with its ms: "516@9000" a key, "up516@9000" its key-up, "f9300:500,1900;5,6,8000000" a frame of
/// fingers 0 and 1, which has flags ("F" of panel 6; "g" with a set of ids that names none), "turn1@9000" panel 3,
/// "keyguard1@9000" it shows, "bar1@9000" the navigation bar, "marked1@9000" a window marked for the notch,
/// "dies1@9000" the sensor service, "cover2@9000" its state, "30x88@9000" samples of the fold angle, "input0@9000" it
/// ends.
inline std::vector<TraceLine> linesOf(const std::string& text) {
    std::vector<TraceLine> lines{{2, 0, ConfigureSurface{3, 1000, 2000}}, {3, 0, NotifyInputStart{}}};
    std::istringstream words(text);
    int times = 0;
    int value = 0;
    int ms = 0;
    for (std::string word; words >> word;) {
        const auto is = [&](const char* form) { return std::sscanf(word.c_str(), form, &value, &ms) == 2; };
        const auto add = [&](const TraceEvent& event) {
            lines.push_back({static_cast<uint32_t>(lines.size() + 2), ms * 1'000'000LL, event});
        };
        if (is("%d@%d")) add(ProcessKey{4, ms * 1'000'000LL, value, 0, true});
        if (is("up%d@%d")) add(ProcessKey{4, ms * 1'000'000LL, value, 0, false});
        if (is("turn%d@%d")) add(ConfigureSurface{3, 1000, 2000, value});
        if (is("keyguard%d@%d")) add(ProcessInputWindow{{{"Mail"}}, 0, value != 0});
        if (is("bar%d@%d"))
            add(ProcessInputWindow{{{"Window{1 u0 NavigationBar}", true, 2019, {0, 1900, 1000, 2000}}}, {}, false});
        if (is("marked%d@%d"))
            add(ProcessInputWindow{{{"Game", true, 1, {-9999, -9999, 9999, 9999}, true, true}}, {}, false});
        if (is("dies%d@%d")) add(SensorService{{}, SensorService::State::Dies});
        if (is("cover%d@%d")) add(SensorEvent{65557, 7, 0, {1, static_cast<float>(value)}});
        if (is("input%d@%d")) add(NotifyInputExit{});
        const bool folds = std::sscanf(word.c_str(), "%dx%d@%d", &times, &value, &ms) == 3;
        for (; folds && times > 0; --times) add(SensorEvent{3, 9, 0, {0, 0, static_cast<float>(value)}});
        if (std::sscanf(word.c_str(), "%*[fFg]%d:", &ms) != 1) continue;
        test::Fingers fingers;
        std::istringstream each(word.substr(word.find(':') + 1));
        for (std::string at; std::getline(each, at, ';');) {
            test::Finger finger{.id = static_cast<uint32_t>(fingers.size())};
            std::sscanf(at.c_str(), "%d,%d,%x", &finger.x, &finger.y, &finger.flags);
            fingers.push_back(finger);
        }
        const android::RawPointerData frame = test::frameOf(fingers);
        const android::BitSet32 named = word[0] == 'g' ? android::BitSet32{} : frame.touchingIdBits;
        add(ProcessRawTouches{word[0] == 'F' ? 6 : 3, ms * 1'000'000LL, frame, named});
    }
    return lines;
}

}  // namespace refhost
