#include "refhost/recording/ContactValues.h"

#include <linux/input-event-codes.h>
#include <linux/input.h>

namespace refhost {

void ContactValues::set(uint16_t code, int32_t value) {
    switch (code) {
        case ABS_MT_POSITION_X: mX = value; break;
        case ABS_MT_POSITION_Y: mY = value; break;
        case ABS_MT_PRESSURE: mPressure = value; break;
        case ABS_MT_TOUCH_MAJOR: mTouchMajor = value; break;
        case ABS_MT_TOUCH_MINOR: mTouchMinor = value; break;
        case ABS_MT_WIDTH_MAJOR: mToolMajor = value; break;
        case ABS_MT_WIDTH_MINOR: mToolMinor = value; break;
        case ABS_MT_ORIENTATION: mOrientation = value; break;
        case ABS_MT_DISTANCE: mDistance = value; break;
        case ABS_MT_TOOL_TYPE: mToolType = value; break;
        default: break;
    }
}

double ContactValues::squaredDistance(const ContactValues& other) const {
    const double dx = static_cast<double>(*mX) - static_cast<double>(*other.mX);
    const double dy = static_cast<double>(*mY) - static_cast<double>(*other.mY);
    return dx * dx + dy * dy;
}

Contact ContactValues::toContact(bool penInRange) const {
    constexpr int32_t kFinger = 1;
    constexpr int32_t kStylus = 2;
    const bool pen = mToolType ? *mToolType == MT_TOOL_PEN : penInRange;

    Contact contact;
    contact.x = *mX;
    contact.y = *mY;
    contact.axes[kPressure] = mPressure.value_or(0);
    contact.axes[kTouchMajor] = mTouchMajor.value_or(0);
    contact.axes[kTouchMinor] = mTouchMinor.value_or(contact.axes[kTouchMajor]);
    contact.axes[kToolMajor] = mToolMajor.value_or(0);
    contact.axes[kToolMinor] = mToolMinor.value_or(contact.axes[kToolMajor]);
    contact.axes[kOrientation] = mOrientation;
    contact.axes[kDistance] = mDistance;
    contact.axes[kToolType] = pen ? kStylus : kFinger;
    contact.palm = mToolType == MT_TOOL_PALM;
    return contact;
}

}  // namespace refhost
