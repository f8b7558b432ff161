#pragma once

#include "harness/ChildProcess.h"

#include <csignal>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velloran::tests {

/// A sway of the test's own, with one output that nobody sees and no input device. It refuses to run as root, so root
/// runs it as somebody else.
class Sway {
public:
    /// Texts by the names of their files, which are beside the configuration.
    using Files = std::map<std::string, std::string>;

    /// Starts it, with further lines of configuration and further files, and waits until it is up.
    explicit Sway(const std::string& configuration = "", const Files& files = {});
    Sway(const Sway&) = delete;
    Sway& operator=(const Sway&) = delete;
    ~Sway();

    [[nodiscard]] bool isUp() const { return !display_.empty(); }

    /// The socket of the compositor, by its whole path.
    [[nodiscard]] std::string display() const { return runtimeFolder() / display_; }

    /// The socket on which it takes commands.
    [[nodiscard]] std::string commandSocket() const { return runtimeFolder() / "commands"; }

    /// What to start a client with: that command in the environment of this compositor.
    [[nodiscard]] std::vector<std::string> withEnvironment(std::vector<std::string> command) const;

    /// Has it do something, in words of its configuration. False when it does not want to.
    [[nodiscard]] bool command(const std::string& words) const;

    /// Replaces what the constructor was given. It is read with the next reload.
    void configure(const std::string& configuration, const Files& files = {}) const;

    /// Has it do nothing, not even read what it is sent, until it is to go on.
    void pause() { process_->sendSignal(SIGSTOP); }

    void goOn() { process_->sendSignal(SIGCONT); }

    /// Ends it as a crash would, and waits until it is gone.
    void crash();

    /// Starts it again in the same place, and waits until it is up.
    void start();

private:
    [[nodiscard]] std::filesystem::path runtimeFolder() const { return folder_ / "run"; }

    std::filesystem::path folder_;
    std::string display_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace velloran::tests
