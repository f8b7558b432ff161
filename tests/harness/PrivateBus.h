#pragma once

#include "harness/ChildProcess.h"

#include <QTemporaryDir>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace velloran::tests {

/// A session bus that nobody else is on and that starts no service but those it is given. It can end, hold still and
/// come back at the same address.
class PrivateBus {
public:
    PrivateBus() {
        std::filesystem::create_directory(path("services"));
        std::ofstream(path("bus.conf")) << "<busconfig><include>" BUS_CONFIGURATION "</include><servicedir>"
                                        << path("services") << "</servicedir></busconfig>";
        start();
    }

    [[nodiscard]] std::string address() const { return "unix:path=" + path("bus"); }

    /// From now on it runs that command when somebody wants the name and nobody has it.
    void offer(const std::string& name, const std::string& command) const {
        std::ofstream(path("services/" + name + ".service"))
            << "[D-BUS Service]\nName=" << name << "\nExec=" << command << '\n';
    }

    /// Starts it where there is none, and waits until it takes connections.
    void start() {
        process_ = std::make_unique<ChildProcess>(std::vector<std::string>{
            "dbus-daemon", "--nofork", "--print-address", "--config-file", path("bus.conf"), "--address=" + address()});
        process_->readLine();
    }

    void end() { process_.reset(); }

    /// From now on it takes what it is sent, and answers nothing.
    void holdStill() const { process_->sendSignal(SIGSTOP); }

    void goOn() const { process_->sendSignal(SIGCONT); }

private:
    [[nodiscard]] std::string path(const std::string& name) const {
        return folder_.filePath(QString::fromStdString(name)).toStdString();
    }

    QTemporaryDir folder_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace velloran::tests
