#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>
#include <utility>

#include "android/frameworks/sensorservice/1.0/ISensorManager.h"
#include "android/hidl/manager/1.0/IServiceNotification.h"
#include "platform/control/SensorService.h"

namespace {

using namespace aftplatform::sensors;
using namespace android::frameworks::sensorservice::V1_0;
using namespace android::hardware;
using android::sp;
using Tell = std::function<void(const std::string&)>;

/// Tells on whatever it is told, and of its own end.
struct Client : IEventQueueCallback, android::hidl::manager::V1_0::IServiceNotification, hidl_death_recipient {
    explicit Client(Tell t) : tell(std::move(t)) {}
    ~Client() override { tell("gone "); }
    Return<void> onEvent(const Event& event) override { return tell(std::to_string(event.timestamp) + " "), Void(); }
    Return<void> onRegistration(const hidl_string&, const hidl_string&, bool) override { return tell("back "), Void(); }
    void serviceDied(uint64_t cookie, const android::wp<android::hidl::base::V1_0::IBase>&) override {
        tell("died" + std::to_string(cookie) + " ");
    }
    Tell tell;
};

struct SensorService : testing::TestWithParam<Delivery> {
    SensorService() {
        offer({{3, 9}, {65557, 7}, {65557, 8}});
        setDelivery(GetParam());
        setPresent(true);
    }
    ~SensorService() override { reset(); }

    sp<Client> client(const std::string& name) {
        return new Client([this, name](const std::string& what) { story += name + what; });
    }
    static sp<ISensorManager> look() { return ISensorManager::getService(); }
    /// How a call is answered: + granted, - refused, x lost.
    template <typename T>
    static char sign(const Return<T>& answer, T granted) {
        return !answer.isOk() ? 'x' : answer == granted ? '+' : '-';
    }
    static char link(const sp<Client>& who, uint64_t cookie, const sp<ISensorManager>& service = look()) {
        return service == nullptr ? 'x' : sign(service->linkToDeath(who, cookie), true);
    }
    static char disable(const sp<IEventQueue>& queue) { return sign(queue->disableSensor(7), Result::OK); }
    /// A queue on which sensor 7 is enabled.
    static sp<IEventQueue> queueTo(const sp<Client>& callback) {
        sp<IEventQueue> queue;
        EXPECT_TRUE(look()->createEventQueue(callback, [&](auto& made, Result) { queue = made; }).isOk());
        EXPECT_TRUE(queue == nullptr || queue->enableSensor(7, 0, 0).isOk());
        return queue;
    }
    static void event(int64_t when, int32_t handle = 7) { deliver({when, handle, {}, {}}); }

    /// What has happened since the last time.
    std::string told() {
        waitUntilDelivered();
        return std::exchange(story, "");
    }
    std::string story;
};
INSTANTIATE_TEST_SUITE_P(Deliveries, SensorService, testing::Values(Delivery::OwnThread, Delivery::Direct),
                         [](const auto& way) { return way.param == Delivery::Direct ? "Direct" : "OwnThread"; });

// A filter would never hear that the service died or is back, hear it twice or in another order than on the phone, or
// go on with a service that is no more.
TEST_P(SensorService, DeathUsesLinksUpAndRegistrationFindsWhoWasTold) {
    const sp<ISensorManager> service = look();
    const sp<Client> a = client("a"), b = client("b");
    const sp<IEventQueue> queue = queueTo(a);
    story = {link(a, 1), link(b, 2), link(client(""), 3), link(a, 4)};
    registers();
    EXPECT_EQ(told(), "++++gone aback bback ");
    die();
    die();
    event(1);
    EXPECT_EQ(look(), nullptr);
    registers();
    EXPECT_EQ(told(), "adied1 bdied2 adied4 aback bback ");
    EXPECT_TRUE(link(a, 5, service) == 'x' && disable(queue) == 'x');

    story = {link(a, 5)};
    registers();
    EXPECT_EQ(told(), "+aback ");
    a->tell = [&](const std::string& what) {  // scripts the service, and links again, from where it is told
        story += what;
        if (what == "died5 ") registers();
        if (what == "back ") story += link(a, 6);
    };
    story = {link(b, 6)};
    die();
    EXPECT_EQ(told(), "+died5 bdied6 back +bback ");
    die();
    setPresent(true);
    die();
    registers();
    EXPECT_EQ(told(), "died6 back +");
    reset();
    registers();
    EXPECT_EQ(told(), "");
    a->tell = [](auto&&) {};
}

// A filter would miss an event or get one from a sensor that it has switched off; its callback would be destroyed while
// it runs, or called again, once it lets go of the service; what is asked for meanwhile would be lost or overtaken.
TEST_P(SensorService, EventsArriveInOrderAndCallbacksMayDoAnything) {
    const std::thread::id caller = std::this_thread::get_id();
    sp<ISensorManager> service = look();
    sp<IEventQueue> queue, other;
    queue = queueTo(new Client([&](const std::string& what) {
        story += what;
        if (what != "1 ") return;
        EXPECT_EQ(std::this_thread::get_id() == caller, GetParam() == Delivery::Direct);
        event(2);
        story += disable(other);
        event(3);
        die();
        service = nullptr;
        queue = nullptr;
        story += "returns ";
    }));
    const sp<Client> recipient = client("other");
    other = queueTo(recipient);
    queueTo(client("no"));
    story += {link(recipient, 0), sign(other->enableSensor(9, 0, 0), Result::OK)};
    for (const int32_t handle : {7, 8, 9}) event(handle, handle);
    EXPECT_EQ(told(), "nogone ++7 other7 other9 ");
    setPresent(false);
    for (const Fault fault : {Fault::Result, Fault::Transport}) {
        setFaults({{Call::DisableSensor, fault}});
        story += disable(other);
    }
    setFaults({});
    event(1);
    EXPECT_EQ(told(), "-x1 +returns gone other1 other2 otherdied0 ");
}

// A link that is taken on while the service dies would never be told.
TEST_P(SensorService, ALinkThatComesTooLateIsLost) {
    const sp<Client> recipient = client("");
    std::promise<void> reached, dead;
    setListener([&](const Reached&) {
        reached.set_value();
        dead.get_future().wait();
    });
    std::thread linker([&] { EXPECT_EQ(link(recipient, 1), 'x'); });
    reached.get_future().wait();
    die();
    dead.set_value();
    linker.join();
}

// A filter that forgets to ask whether its call got through would seem to work here and fail on the phone.
TEST(ReturnDeathTest, AFailureCannotBeOverlooked) {
    const auto lost = [] { return Return<bool>(Status::fromExceptionCode(Status::EX_TRANSACTION_FAILED, "gone")); };
    EXPECT_DEATH({ const Return<bool> moved = lost(); }, "nobody asked .* -129: gone");
    EXPECT_DEATH((void)static_cast<bool>(lost()), "is read: .* gone");
    Return<bool> first = lost();
    const Return<bool> second = std::move(first);
    EXPECT_TRUE(!second.isOk() && lost().withDefault(true) && Return<bool>(true));
}

}  // namespace
