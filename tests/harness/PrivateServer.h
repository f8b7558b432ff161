#pragma once

#include "harness/ChildProcess.h"

#include <memory>
#include <string>

namespace velloran::tests {

/// An X server of the test's own, with a window manager that binds no keys and no buttons. Nobody sees its screen.
class PrivateServer {
public:
    /// Starts both and waits until they are up.
    PrivateServer();

    /// Whether both are up.
    [[nodiscard]] bool isUp() const { return isUp_; }

    /// The name to connect to, for instance ":5".
    [[nodiscard]] const std::string& displayName() const { return displayName_; }

    /// Ends the server as a crash would, and waits until it is gone.
    void crash();

    /// Has the server do nothing, not even read what it is sent, until it is to go on.
    void pause();
    void goOn();

private:
    std::string displayName_;
    std::unique_ptr<ChildProcess> server_;
    std::unique_ptr<ChildProcess> windowManager_;
    bool isUp_ = false;
};

} // namespace velloran::tests
