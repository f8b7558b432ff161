#pragma once

#include "harness/PrivateServer.h"
#include "harness/observer/InputSender.h"
#include "harness/observer/InputWatcher.h"
#include "harness/observer/Server.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/x11/X11Server.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velloran::tests {

/// All that a server can do, as one thing to hold and to let go of.
class X11Parts {
public:
    explicit X11Parts(std::shared_ptr<platform::x11::X11Server> server)
        : server_(std::move(server)),
          pointerEvents_(server_->pointerEvents()),
          inputTrust_(server_->inputTrust(pointerEvents_)),
          pointerPosition_(server_->pointerPosition({})),
          hotKeys_(server_->hotKeys()) {}

    [[nodiscard]] platform::PointerEvents& pointerEvents() const { return *pointerEvents_; }

    [[nodiscard]] platform::InputTrust& inputTrust() const { return *inputTrust_; }

    [[nodiscard]] platform::PointerPosition& pointerPosition() const { return *pointerPosition_; }

    [[nodiscard]] platform::HotKeys& hotKeys() const { return *hotKeys_; }

    [[nodiscard]] platform::x11::X11Keyboard& keyboard() const { return server_->keyboard(); }

private:
    const std::shared_ptr<platform::x11::X11Server> server_;
    const std::shared_ptr<platform::x11::X11PointerEvents> pointerEvents_;
    const std::shared_ptr<platform::InputTrust> inputTrust_;
    const std::shared_ptr<platform::PointerPosition> pointerPosition_;
    const std::shared_ptr<platform::HotKeys> hotKeys_;
};

/// The fixture of all tests here: the platform on a private server, beside another program that plays the user and sees
/// what the platform does.
class Desktop : public testing::Test {
protected:
    /// X key codes of a customary keyboard.
    static constexpr std::uint8_t controlKey = 37;
    static constexpr std::uint8_t shiftKey = 50;
    static constexpr std::uint8_t altKey = 64;
    static constexpr std::uint8_t superKey = 133;
    static constexpr std::uint8_t f8Key = 74;
    static constexpr std::uint8_t f9Key = 75;
    static constexpr std::uint8_t sKey = 39;
    static constexpr unsigned shiftBit = 0x01;
    static constexpr unsigned capsLock = 0x02;
    static constexpr unsigned controlBit = 0x04;
    static constexpr unsigned numLock = 0x10;
    static constexpr unsigned mod3 = 0x20;

    void SetUp() override;

    /// Opens the other program's window, gives it the focus and puts the pointer on it.
    void openWindow();

    /// Runs the loop until the condition holds; false when it does not within ten seconds. Keeps `events` up to date.
    bool until(const std::function<bool()>& condition);

    /// Runs the loop for that long: how long a user does something, never how long a test waits for something.
    void during(double seconds);

    /// Has the platform take in everything that the server has sent so far, and act on it.
    void settle();

    /// The other program does not wake the loop up any more.
    void stopWatchingOther() { otherWatch_.reset(); }

    /// Button events seen so far on the whole server, or by the window.
    [[nodiscard]] std::vector<observer::InputEvent> buttonEvents(bool isRaw) const;
    [[nodiscard]] std::size_t count(observer::InputEvent::Kind kind, bool isRaw = false) const;

    PrivateServer server;
    platform::qt::QtEventLoop loop;
    std::unique_ptr<observer::Server> other;
    std::unique_ptr<observer::InputSender> user;
    std::unique_ptr<observer::InputWatcher> watcher;
    std::vector<observer::InputEvent> events;
    int losses = 0;
    /// How often the loop has woken up.
    int turns = 0;
    std::unique_ptr<X11Parts> x11;

private:
    bool takeEvents();

    std::unique_ptr<EventLoop::Watch> otherWatch_;
};

} // namespace velloran::tests
