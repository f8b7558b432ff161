#include "platform/x11/Desktop.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace velloran::tests {

namespace {

constexpr double patience = 10.0;

std::uint64_t nanoseconds(double seconds) {
    return static_cast<std::uint64_t>(seconds * static_cast<double>(nanosecondsPerSecond));
}

} // namespace

void Desktop::SetUp() {
    ASSERT_TRUE(server.isUp()) << "Xvfb and openbox must be installed";
    other = observer::Server::connect(server.displayName());
    ASSERT_NE(other, nullptr);
    user = std::make_unique<observer::InputSender>(*other);
    watcher = std::make_unique<observer::InputWatcher>(*other);
    ASSERT_TRUE(watcher->listenToServer());
    // Only to wake the loop up: reading happens in until().
    otherWatch_ = loop.watch(other->fileDescriptor(), EventLoop::Readiness::readable, [] {});
    auto connected = platform::x11::X11Server::connect(
        loop, [this] { ++losses; }, server.displayName().c_str());
    ASSERT_TRUE(connected.ok()) << connected.error().message;
    x11 = std::make_unique<X11Parts>(std::move(connected).value());
}

void Desktop::openWindow() {
    const auto area = watcher->openWindow({200, 150, 400, 300}, "target", true);
    ASSERT_TRUE(area.has_value());
    user->movePointer({area->x + area->width / 2, area->y + area->height / 2});
    ASSERT_TRUE(watcher->takeFocus());
}

bool Desktop::until(const std::function<bool()>& condition) {
    bool isTooLate = false;
    const ScheduledCall limit(loop, loop.callAfter(nanoseconds(patience), [&isTooLate] { isTooLate = true; }));
    while (true) {
        takeEvents();
        if (condition()) {
            return true;
        }
        if (isTooLate) {
            return false;
        }
        // A condition that asks the server reads events along with the answer: those do not wake the loop up any more.
        if (takeEvents()) {
            continue;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        ++turns;
    }
}

bool Desktop::takeEvents() {
    const auto fresh = watcher->read();
    events.insert(events.end(), fresh.begin(), fresh.end());
    return !fresh.empty();
}

void Desktop::during(double seconds) {
    bool isOver = false;
    const ScheduledCall end(loop, loop.callAfter(nanoseconds(seconds), [&isOver] { isOver = true; }));
    EXPECT_TRUE(until([&isOver] { return isOver; }));
}

void Desktop::settle() {
    // Everything sent so far arrives along with the answer. Events are handed on one turn later, and what they lead to
    // happens in the turn after that.
    ASSERT_TRUE(other->synchronize());
    x11->pointerPosition().currentPosition();
    int turnsTaken = 0;
    const std::function<void()> turn = [&] {
        if (++turnsTaken < 4) {
            loop.post(turn);
        }
    };
    loop.post(turn);
    ASSERT_TRUE(until([&turnsTaken] { return turnsTaken == 4; }));
}

std::vector<observer::InputEvent> Desktop::buttonEvents(bool isRaw) const {
    std::vector<observer::InputEvent> found;
    std::copy_if(events.begin(), events.end(), std::back_inserter(found), [isRaw](const observer::InputEvent& event) {
        return event.isRaw == isRaw && (event.kind == observer::InputEvent::Kind::buttonPress ||
                                        event.kind == observer::InputEvent::Kind::buttonRelease);
    });
    return found;
}

std::size_t Desktop::count(observer::InputEvent::Kind kind, bool isRaw) const {
    return static_cast<std::size_t>(std::count_if(events.begin(), events.end(), [&](const observer::InputEvent& event) {
        return event.kind == kind && event.isRaw == isRaw;
    }));
}

} // namespace velloran::tests
