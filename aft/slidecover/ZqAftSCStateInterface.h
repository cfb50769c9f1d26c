#pragma once

#include <utils/Mutex.h>
#include <utils/RefBase.h>

#include "aft/slidecover/SCFitlterState.h"

namespace android {

/// The slide cover's state, as those see it who do not care where it comes from. Any thread.
class ZqAftSCStateInterface : public RefBase {
  public:
    /// Both wait for the sensor service, and log what becomes of it.
    virtual void enableSCSensor() = 0;
    virtual void disableSCSensor() = 0;
    /// @param out the latest state, when true is answered; else left as it is
    /// @return    whether the sensor is enabled
    virtual bool getSCFilterState(SCFitlterState& out) = 0;

    /// Whether the phone has a slide cover. Reads the system property each time.
    static bool isSupport();
    /// The single instance, created, and with it connected to the sensor service, by the first call; lives until the
    /// library is unloaded.
    static sp<ZqAftSCStateInterface> getInstance();

  protected:
    static Mutex sLock;  ///< guards sInstance, and lets one death or registration at a time change the connection
    static sp<ZqAftSCStateInterface> sInstance;
};

}  // namespace android
