#include "harness/PrivateServer.h"

#include <csignal>

namespace velloran::tests {

PrivateServer::PrivateServer() {
    // The server writes the number it has chosen to its standard output.
    server_ = std::make_unique<ChildProcess>(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0",
                                                                      "1024x768x24", "-nolisten", "tcp", "-noreset"});
    const auto number = server_->readLine();
    if (!number) {
        return;
    }
    displayName_ = ":" + *number;
    // It announces itself to programs early on, and loses windows that are mapped before it is quite ready.
    windowManager_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"env", "DISPLAY=" + displayName_, "openbox", "--sm-disable", "--config-file",
                                 OPENBOX_CONFIGURATION, "--startup", "echo ready"});
    isUp_ = windowManager_->readLine() == "ready";
}

void PrivateServer::pause() {
    server_->sendSignal(SIGSTOP);
}

void PrivateServer::goOn() {
    server_->sendSignal(SIGCONT);
}

void PrivateServer::crash() {
    server_->sendSignal(SIGKILL);
    server_->wait();
}

} // namespace velloran::tests
