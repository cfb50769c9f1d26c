#pragma once

#include <cstdint>
#include <map>
#include <string_view>

#include "bench/soak/Phone.h"

namespace soak {

/// How often each filter has done what it is for. What is here has been tried.
using Acts = std::map<std::string_view, uint64_t>;

/// What a day has of gestures, so that every filter has to act; some 220 frames. Each gesture leaves the phone upright,
/// untouched, at home, and its sensors enabled.
class Day {
  public:
    explicit Day(Phone& phone) : mPhone(phone) {}

    void pass();
    const Acts& acts() const { return mActs; }

  private:
    void rest();
    int32_t sensorX();
    int32_t sensorY();
    void swipeFromSensor();
    void keyUnderFinger();
    void keyOfASwipe();
    void unlock();
    void cheekInACall();
    void handOverNotch();
    void coverInAGesture();
    void crowd();
    void fold();
    void service();
    void home();

    Phone& mPhone;
    Acts mActs;
};

}  // namespace soak
