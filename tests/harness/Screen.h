#pragma once

#include "harness/ChildProcess.h"
#include "harness/PrivateServer.h"
#include "harness/observer/InputSender.h"
#include "harness/observer/Server.h"

#include <memory>
#include <string>

namespace velloran::tests {

/// What the window runs on here: an X server, a window manager and a message bus that nobody else uses, and a user at
/// the keyboard. There is one, made before the toolkit's application object.
class Screen {
public:
    /// Starts all of it and points the environment there. Ends the program with a fatal error when something does not
    /// start.
    Screen();
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen();

    /// The one screen.
    static Screen& current();

    /// Where the message bus listens.
    [[nodiscard]] const std::string& busAddress() const { return busAddress_; }

    [[nodiscard]] const std::string& displayName() const { return server_.displayName(); }

    /// Names a keyboard layout, as `setxkbmap` takes it, to the server.
    void setLayout(const std::string& layout) const;

    [[nodiscard]] const observer::InputSender& user() const { return *user_; }

    [[nodiscard]] const observer::Server& other() const { return *other_; }

private:
    PrivateServer server_;
    ChildProcess bus_;
    std::string busAddress_;
    std::unique_ptr<observer::Server> other_;
    std::unique_ptr<observer::InputSender> user_;
};

} // namespace velloran::tests
