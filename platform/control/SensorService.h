#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "aftplatform/export.h"
#include "android/hardware/sensors/1.0/types.h"

/// The sensor service of this process, for hosts and tests to script. At the start there is none. Any thread; the calls
/// take effect one after the other.
///
/// Events, deaths and registrations go out on a thread of the service's own, as on the phone, in the order in which
/// they were asked for; with Delivery::Direct they go out on the caller's thread before the call returns. In both, what
/// a callback itself asks for goes out after what was asked for before. To whom is settled when it is asked for.
/// Recipients and callbacks are held while they are called, and no lock is: they may call and script the service, and
/// drop the last reference to anything.
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

/// Makes the service present and sends a registration notice, one to each recipient that is linked to it, or, where
/// none is, to those that the last death told that told anybody; the service manager keeps them for that.
AFTPLATFORM_API void registers();

/// Which calls fail from now on, and how; the others are mended.
AFTPLATFORM_API void setFaults(std::map<Call, Fault> faults);

/// Brings an event to every queue on which its handle is enabled, in the order in which the queues were made. It goes
/// out even if the service dies meanwhile, or the handle is disabled; but a queue that has gone by then gets none.
AFTPLATFORM_API void deliver(const Event& event);

/// Delivery::OwnThread at the start. Waits as waitUntilDelivered() does.
AFTPLATFORM_API void setDelivery(Delivery delivery);

/// Returns when nothing is on its way any more. From within a callback it would never: that ends the process.
AFTPLATFORM_API void waitUntilDelivered();

/// Hears of each call that reaches the service, on the thread that calls, before it is answered. An empty function:
/// nobody does. It must neither call nor script the service.
AFTPLATFORM_API void setListener(std::function<void(const Reached&)> listener);

/// As at the start: no service, no sensors, no faults, no listener, nothing linked or remembered; what is held of the
/// service is dead, and nobody is told of that. Waits as waitUntilDelivered() does. A host does this before it unloads
/// whoever has used the service.
AFTPLATFORM_API void reset();

}  // namespace aftplatform::sensors
