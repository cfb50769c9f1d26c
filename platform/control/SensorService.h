#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "aftplatform/export.h"
#include "android/hardware/sensors/1.0/types.h"

/// The sensor service of this process, for hosts and tests to script. At the start there is none. Any thread; but those
/// that change whether there is a service, and reset(), take effect one after the other in the order of the calls.
///
/// Events, deaths and registrations go out on a thread of the service's own, as on the phone, in the order in which
/// they were asked for; with Delivery::Direct they go out on the caller's thread before the call returns. Recipients
/// and callbacks are held while they are called, and no lock is: they may call the service, and drop its last
/// reference.
namespace aftplatform::sensors {

using android::hardware::sensors::V1_0::Event;

/// A sensor that the service offers.
struct Sensor {
    int32_t type = 0;
    int32_t handle = 0;
};

/// The calls that can fail. GetService is answered by the service manager.
enum class Call { GetService, LinkToDeath, CreateEventQueue, GetDefaultSensor, EnableSensor, DisableSensor };

enum class Fault {
    Transport,  ///< the call does not get through
    Result,     ///< it does, and is refused: a Result other than OK; linkToDeath answers false and links nothing;
                ///< createEventQueue delivers a queue all the same
    NoQueue,    ///< createEventQueue delivers none
};

/// A call that reached the service. The look-up is none.
struct Reached {
    Call call = Call::GetService;
    std::vector<int64_t> arguments;  ///< linkToDeath: cookie; getDefaultSensor: type; enableSensor: handle, period,
                                     ///< latency; disableSensor: handle
};

enum class Delivery { OwnThread, Direct };

/// What every look-up's sensors are from now on. The first of a type is that type's default.
AFTPLATFORM_API void offer(std::vector<Sensor> sensors);

/// Whether a look-up finds the service. A proxy that somebody holds goes on working. After a death, being present is a
/// new life: what was held of the old one stays dead.
AFTPLATFORM_API void setPresent(bool present);

/// Ends the service's life, if it has one: every proxy and queue of it fails at the transport, its linked recipients
/// are told in the order of linking, which uses the links up, and look-ups find nothing.
AFTPLATFORM_API void die();

/// Makes the service present and sends a registration notice: to the recipients that are linked to it, or, where none
/// is, to those that the last death told that told anybody; the service manager keeps them for that.
AFTPLATFORM_API void registers();

/// Which calls fail from now on, and how; the others are mended.
AFTPLATFORM_API void setFaults(std::map<Call, Fault> faults);

/// Brings an event to every queue on which its handle is enabled, in the order in which the queues were made.
AFTPLATFORM_API void deliver(const Event& event);

/// Delivery::OwnThread at the start. Waits until what is under way has gone out.
AFTPLATFORM_API void setDelivery(Delivery delivery);

/// Returns when all that was asked for before has gone out. Not from within a callback.
AFTPLATFORM_API void waitUntilDelivered();

/// Hears of each call that reaches the service, on the thread that calls, before it is answered. An empty function:
/// nobody does. It must not call back into the service.
AFTPLATFORM_API void setListener(std::function<void(const Reached&)> listener);

/// As at the start: no service, no sensors, no faults, no listener, nothing linked or remembered. Waits as
/// setDelivery() does. A host does this before it unloads whoever has used the service.
AFTPLATFORM_API void reset();

}  // namespace aftplatform::sensors
