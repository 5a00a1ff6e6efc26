#include "platform/desktop/InstanceBus.h"

#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>

#include <csignal>
#include <future>

namespace tallowby {

namespace {

using test::waitUntil;
using Claim = InstanceBus::Claim;

/// What a second start of the program does; the first runs the event loop meanwhile.
template <typename Action>
auto inSecondProcess(Action action) {
    auto result = std::async(std::launch::async, [&] {
        const auto bus = makeInstanceBus();
        return action(*bus);
    });
    EXPECT_TRUE(waitUntil([&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return result.get();
}

TEST(InstanceBus, TheFirstRunsAndLaterOnesHandTheirCommandOver) {
    EXPECT_FALSE(inSecondProcess([](InstanceBus &bus) { return bus.send(InstanceCommand::quit); }));
    auto first = makeInstanceBus();
    std::vector<InstanceCommand> received;
    ASSERT_EQ(first->claim(InstanceCommand::activate, [&](InstanceCommand command) { received.push_back(command); }),
              Claim::first);
    EXPECT_TRUE(received.empty());

    const std::vector all{InstanceCommand::activate, InstanceCommand::toggle, InstanceCommand::settings};
    for (const InstanceCommand command : all) {
        EXPECT_EQ(inSecondProcess([command](InstanceBus &bus) { return bus.claim(command, [](InstanceCommand) {}); }),
                  Claim::handedOver);
    }
    EXPECT_TRUE(inSecondProcess([](InstanceBus &bus) { return bus.send(InstanceCommand::quit); }));
    EXPECT_EQ(received.size(), 4U);
    EXPECT_TRUE(std::equal(all.begin(), all.end(), received.begin()));
    EXPECT_EQ(received.back(), InstanceCommand::quit);

    first.reset();
    EXPECT_EQ(inSecondProcess([](InstanceBus &bus) { return bus.claim(InstanceCommand::activate, {}); }), Claim::first);
}

TEST(InstanceBus, RefusesWhatIsNoCommand) {
    auto first = makeInstanceBus();
    int received = 0;
    ASSERT_EQ(first->claim(InstanceCommand::activate, [&](InstanceCommand) { ++received; }), Claim::first);
    const auto call = [](const QString &method, const QVariantList &arguments) {
        auto message = QDBusMessage::createMethodCall(u"org.tallowby.Tallowby"_qs, u"/org/tallowby/Tallowby"_qs,
                                                      u"org.tallowby.Tallowby"_qs, method);
        message.setArguments(arguments);
        QDBusPendingReply<> reply = QDBusConnection::sessionBus().asyncCall(message);
        EXPECT_TRUE(waitUntil([&] { return reply.isFinished(); }));
        return reply.isValid();
    };
    EXPECT_FALSE(call(u"Format"_qs, {}));
    EXPECT_FALSE(call(u"deleteLater"_qs, {}));
    EXPECT_FALSE(call(u"Quit"_qs, {u"now"_qs}));
    EXPECT_EQ(received, 0);
    EXPECT_TRUE(call(u"Quit"_qs, {}));
    EXPECT_EQ(received, 1);
}

TEST(InstanceBus, IsUnavailableWithoutASessionBus) {
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    for (const QByteArray &nowhere : {QByteArray("unix:path=/nonexistent"), QByteArray()}) {
        qputenv("DBUS_SESSION_BUS_ADDRESS", nowhere);
        const auto bus = makeInstanceBus();
        EXPECT_EQ(bus->claim(InstanceCommand::activate, [](InstanceCommand) {}), Claim::unavailable);
        EXPECT_FALSE(bus->send(InstanceCommand::quit));
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
}

TEST(TerminationSignal, IsHandledByTheEventLoop) {
    int requests = 0;
    onTerminationSignal([&] { ++requests; });
    std::raise(SIGTERM);
    EXPECT_EQ(requests, 0) << "inside of the signal's handler";
    EXPECT_TRUE(waitUntil([&] { return requests == 1; }));
    std::raise(SIGINT);
    EXPECT_TRUE(waitUntil([&] { return requests == 2; }));
}

} // namespace

} // namespace tallowby
