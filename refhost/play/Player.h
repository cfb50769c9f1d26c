#pragma once

#include <memory>
#include <string>
#include <vector>

#include "refhost/play/CallResult.h"
#include "refhost/play/HandedIn.h"
#include "refhost/play/Plugin.h"
#include "refhost/trace/Trace.h"

namespace refhost {

/// Plays a trace through the shipping plug-in, one line at a time, and collects what comes back. It owns the world
/// around the plug-in: the properties, the log, a virtual clock, the sensor service, the devices and the windows.
/// Nothing of it depends on the machine, so the same trace gives the same answers everywhere: what the sensor service
/// sends arrives before the line is over. One per process, since the plug-in reads the properties once. One thread.
class Player {
  public:
    /// Whether the plug-in's decisions are recorded.
    enum class Listening { Off, On };

    /// Sets the header's properties and sensors, then loads the plug-in. Throws PluginError.
    Player(const TraceHeader& header, const std::string& pluginPath, Listening listening = Listening::On);
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// What came back; valid until the next call.
    const CallResult& play(const TraceLine& line);

  private:
    /// The world that has to stand before the plug-in is loaded, and until it has been unloaded.
    class World {
      public:
        World(const TraceHeader& header, Listening listening);
        ~World();
        World(const World&) = delete;
        World& operator=(const World&) = delete;

        CallResult result;
        HandedIn handedIn;

      private:
        /// The library reports its decisions here.
        static void onDecision(const android::DecisionRecord& made, void* world);
        const android::DecisionListener mListener{&World::onDecision, this};
    };

    android::InputMapper* mapper(const DeviceRef& device);

    void play(const ProcessKey& call);
    void play(const ProcessRawTouches& call);
    void play(const ProcessInputWindow& call);
    void play(const ConfigureSurface& call);
    void play(const NotifyInputStart& call);
    void play(const NotifyInputExit& call);
    void play(const NotifyScreenState& call);
    void play(const SetProperty& happening);
    void play(const SensorEvent& happening);
    void play(const SensorService& happening);

    template <typename Call>
    void timed(Call call);

    World mWorld;
    CallResult& mResult = mWorld.result;
    std::vector<std::unique_ptr<HostDevice>> mDevices;
    std::vector<char> mToken{0};  ///< any address that is not null: what a window's token points at
    android::Vector<void*> mKeys;
    Plugin mPlugin;  ///< last: unloaded while the world still stands
};

}  // namespace refhost
