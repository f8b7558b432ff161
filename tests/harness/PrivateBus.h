#pragma once

#include "harness/ChildProcess.h"

#include <QTemporaryDir>

#include <csignal>
#include <memory>
#include <string>
#include <vector>

namespace velloran::tests {

/// A session bus that nobody else is on and that starts no service. It can end, hold still and come back at the same
/// address.
class PrivateBus {
public:
    PrivateBus() { start(); }

    [[nodiscard]] std::string address() const {
        return "unix:path=" + folder_.filePath(QStringLiteral("bus")).toStdString();
    }

    /// Starts it where there is none, and waits until it takes connections.
    void start() {
        process_ = std::make_unique<ChildProcess>(std::vector<std::string>{"dbus-daemon", "--nofork", "--print-address",
                                                                           "--config-file", BUS_CONFIGURATION,
                                                                           "--address=" + address()});
        process_->readLine();
    }

    void end() { process_.reset(); }

    /// From now on it takes what it is sent, and answers nothing.
    void holdStill() const { process_->sendSignal(SIGSTOP); }

    void goOn() const { process_->sendSignal(SIGCONT); }

private:
    QTemporaryDir folder_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace velloran::tests
