#pragma once

#include "harness/ChildProcess.h"

#include <memory>
#include <string>

namespace velloran::tests {

/// A sound server of the test's own, with one silent device. The environment of the test names it as the server to use,
/// and has neither a display nor a home to find another one.
class SoundServer {
public:
    /// Only prepares the environment: no server is running yet.
    SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;
    ~SoundServer();

    /// Starts the server and waits until it takes connections. False when it does not within half a minute.
    bool start();
    /// Kills it; the socket stays behind.
    void kill();
    /// It lives on and does nothing.
    void freeze();
    void thaw();

    /// Whether the server has written `text` to its log since it was started.
    [[nodiscard]] bool logHolds(const std::string& text) const;
    /// Waits until it has. False when it does not within half a minute.
    [[nodiscard]] bool waitForLog(const std::string& text) const;

    /// Its process; it must be running.
    [[nodiscard]] pid_t process() const { return process_->pid(); }

    [[nodiscard]] const std::string& folder() const { return folder_; }

private:
    std::string folder_;
    std::string log_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace velloran::tests
