#pragma once

#include <functional>
#include <string>
#include <vector>

struct eis;
struct eis_client;
struct eis_device;
struct eis_seat;

namespace velloran::tests {

/// Stands for a desktop at the other end of a connection for emulated input. Does nothing by itself: `look` takes what
/// has arrived.
class EiServer {
public:
    EiServer();
    EiServer(const EiServer&) = delete;
    EiServer& operator=(const EiServer&) = delete;
    ~EiServer();

    /// The client's end of the connection; the caller's to close.
    int makeClient();

    void look();
    void pause();
    void resume();
    void addDevice();
    void removeDevice();
    void disconnect();

    [[nodiscard]] bool hasClient() const { return client_ != nullptr; }

    [[nodiscard]] bool hasDevice() const { return device_ != nullptr; }

    /// Whether whoever gets a device may use it at once.
    bool resumesAtOnce = true;
    /// What was done to buttons, and the frames it came in: "272 down", "frame".
    std::vector<std::string> log;
    bool isEmulating = false;
    bool isClientGone = false;

private:
    eis* server_;
    eis_client* client_ = nullptr;
    eis_seat* seat_ = nullptr;
    eis_device* device_ = nullptr;
};

} // namespace velloran::tests
