#include "platform/portal/Portal.h"

#include "platform/portal/PortalBench.h"
#include "platform/portal/PortalFileChooser.h"
#include "platform/portal/PortalSession.h"
#include "platform/portal/PortalSettings.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace velloran::tests {
namespace {

using namespace platform::portal;
using namespace std::chrono_literals;

using PortalTest = PortalBench;

/// A bus that holds still until this goes, or until it is clear that somebody waits for it.
class HeldBus {
public:
    explicit HeldBus(PrivateBus& bus) : bus_(bus) {
        bus_.holdStill();
        guard_ = std::thread([this] {
            std::unique_lock lock(mutex_);
            if (!over_.wait_for(lock, 10s, [this] { return isOver_; })) {
                isWaitedFor_ = true;
                bus_.goOn();
            }
        });
    }

    HeldBus(const HeldBus&) = delete;
    HeldBus& operator=(const HeldBus&) = delete;

    ~HeldBus() {
        {
            const std::lock_guard lock(mutex_);
            isOver_ = true;
        }
        over_.notify_all();
        guard_.join();
        bus_.goOn();
    }

    [[nodiscard]] bool isWaitedFor() const { return isWaitedFor_; }

private:
    PrivateBus& bus_;
    std::mutex mutex_;
    std::condition_variable over_;
    bool isOver_ = false;
    std::atomic<bool> isWaitedFor_ = false;
    std::thread guard_;
};

TEST_F(PortalTest, IsKnownThroughItsComingAndGoing) {
    QSignalSpy appeared(&portal, &Portal::appeared);
    QSignalSpy vanished(&portal, &Portal::vanished);
    EXPECT_FALSE(portal.isThere());
    bringPortal();
    fake.reset();
    ASSERT_TRUE(until([&] { return !portal.isThere(); }));
    bringPortal();
    EXPECT_EQ(appeared.count(), 2);
    EXPECT_EQ(vanished.count(), 1);
}

TEST_F(PortalTest, OneThatIsThereAlreadyIsFound) {
    bringPortal();
    const Portal later(session);
    EXPECT_FALSE(later.isThere());
    EXPECT_TRUE(until([&] { return later.isThere(); }));
}

TEST_F(PortalTest, OneThatIsNotRunningIsStarted) {
    const QTemporaryDir folder;
    const QString mark = folder.filePath("started");
    bus.offer("org.freedesktop.portal.Desktop", "/usr/bin/touch " + mark.toStdString());
    const Portal later(session);
    EXPECT_TRUE(until([&] { return QFile::exists(mark); }));
}

TEST_F(PortalTest, TellsWhenThereIsNoneToStart) {
    QSignalSpy missing(&portal, &Portal::missing);
    ASSERT_TRUE(until([&] { return missing.size() == 1; }));
    bringPortal();
    settle();
    EXPECT_EQ(missing.size(), 1);
}

TEST_F(PortalTest, OneThatIsThereIsNotMissed) {
    FakePortal running(bus.address());
    platform::bus::SessionBus second{{QByteArray::fromStdString(bus.address()), platform::bus::BusState::answers}};
    Portal found(second);
    QSignalSpy missing(&found, &Portal::missing);
    ASSERT_TRUE(until([&] { return found.isThere(); }));
    settle();
    EXPECT_EQ(missing.size(), 0);
}

TEST_F(PortalTest, TellsVersionsOfInterfaces) {
    bringPortal();
    fake->version = 5;
    fake->missing.append("org.freedesktop.portal.Wallpaper");
    std::vector<uint> told;
    QObject context;
    for (const auto* const interface : {"org.freedesktop.portal.Camera", "org.freedesktop.portal.Wallpaper"}) {
        portal.askVersion(interface, &context, [&](uint version) { told.push_back(version); });
    }
    ASSERT_TRUE(until([&] { return told.size() == 2; }));
    EXPECT_EQ(told, (std::vector<uint>{5, 0}));
}

TEST_F(PortalTest, VersionOfOneThatHasGoneIsNotTold) {
    bringPortal({}, FakePortal::Manner::staysSilent);
    bool isTold = false;
    QObject context;
    portal.askVersion("org.freedesktop.portal.Camera", &context, [&](uint) { isTold = true; });
    settle();
    fake->vanish();
    ASSERT_TRUE(until([&] { return !portal.isThere(); }));
    bringPortal();
    settle();
    EXPECT_FALSE(isTold);
}

TEST_F(PortalTest, GoesWithTheBusAndComesWithIt) {
    bringPortal();
    QSignalSpy vanished(&portal, &Portal::vanished);
    bus.end();
    ASSERT_TRUE(until([&] { return !portal.isThere(); }));
    EXPECT_EQ(vanished.count(), 1);
    fake.reset();
    bus.start();
    bringPortal();
}

TEST_F(PortalTest, OnlyTheBusIsBelievedWhoItIs) {
    bringPortal();
    QSignalSpy vanished(&portal, &Portal::vanished);
    const QString busName = "org.freedesktop.DBus";
    QDBusMessage lie = QDBusMessage::createTargetedSignal(session.connection().baseService(), "/org/freedesktop/DBus",
                                                          busName, "NameOwnerChanged");
    lie << "org.freedesktop.portal.Desktop" << QString() << ":1.999";
    sendFromElsewhere(lie);
    EXPECT_EQ(vanished.count(), 0);
    EXPECT_TRUE(portal.isThere());
}

TEST_F(PortalTest, IsToldTheNameBeforeAnythingElse) {
    platform::bus::SessionBus own({QByteArray::fromStdString(bus.address()), platform::bus::BusState::answers},
                                  platform::bus::SessionBus::Start::inBackground);
    Portal named(own, "app.velloran.Velloran");
    const PortalSettings settings(named);
    for (int time = 0; time < 2; ++time) {
        fake.emplace(bus.address());
        ASSERT_TRUE(until([&] { return fake->calls.size() == 2; }));
        EXPECT_EQ(fake->calls, (QStringList{"Register", "ReadAll"}));
        EXPECT_EQ(fake->names, QStringList{"app.velloran.Velloran"});
        EXPECT_TRUE(named.isThere());
        EXPECT_EQ(named.nameError(), "");
        fake.reset();
        ASSERT_TRUE(until([&] { return !named.isThere(); }));
    }
}

TEST_F(PortalTest, ANameThatIsNotTakenHoldsNothingUp) {
    Portal named(session, "app.velloran.Velloran");
    fake.emplace(bus.address(), SettingGroups(), FakePortal::Manner::refuses);
    ASSERT_TRUE(until([&] { return named.isThere(); }));
    EXPECT_EQ(named.nameError(), "not for you");
}

TEST_F(PortalTest, ACallWithoutABusFailsInALaterTurn) {
    bus.end();
    ASSERT_TRUE(until([&] { return !session.connection().isConnected(); }));
    std::optional<QDBusMessage::MessageType> answer;
    QObject context;
    portal.call({"org.freedesktop.DBus.Peer", "Ping"}, &context,
                [&](const QDBusMessage& message) { answer = message.type(); });
    EXPECT_FALSE(answer.has_value());
    ASSERT_TRUE(until([&] { return answer.has_value(); }));
    EXPECT_EQ(answer, QDBusMessage::ErrorMessage);
}

TEST_F(PortalTest, NobodyWaitsForABusThatAnswersLate) {
    const auto contrast = QStringLiteral("contrast");
    fake.emplace(bus.address(), SettingGroups{{"org.freedesktop.appearance", {{contrast, 1U}}}});
    std::optional<Portal> late;
    std::optional<PortalSettings> settings;
    std::optional<PortalSession> remote;
    std::unique_ptr<platform::FileDialog> dialog;
    {
        const HeldBus held(bus);
        late.emplace(session);
        settings.emplace(*late);
        remote.emplace(*late, "org.freedesktop.portal.RemoteDesktop");
        PortalFileChooser chooser(*late);
        dialog = chooser.ask({}, [](const platform::FileAnswer&) {});
        QCoreApplication::processEvents();
        EXPECT_FALSE(held.isWaitedFor());
    }
    EXPECT_TRUE(until([&] { return settings->wishes().get().highContrast; }));
    EXPECT_TRUE(until([&] { return fake->requests == 2; }));
}

TEST_F(PortalTest, NobodyWaitsForABusThatComesToRest) {
    bringPortal();
    std::optional<PortalSession> remote;
    remote.emplace(portal, "org.freedesktop.portal.RemoteDesktop");
    settle();
    const HeldBus held(bus);
    const PortalSettings settings(portal);
    const PortalRequest request(portal, {"org.freedesktop.portal.Some", "Thing"}, {}, [](const PortalResponse&) {});
    remote.reset();
    QCoreApplication::processEvents();
    EXPECT_FALSE(held.isWaitedFor());
}

} // namespace
} // namespace velloran::tests
