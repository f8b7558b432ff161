#pragma once

#include <atomic>
#include <filesystem>
#include <list>
#include <string>
#include <thread>
#include <utility>

namespace velloran::tests {

/// Stands between a client and a socket, and can cut every connection while whoever listens there lives on.
class SocketProxy {
public:
    explicit SocketProxy(std::string target);
    SocketProxy(const SocketProxy&) = delete;
    SocketProxy& operator=(const SocketProxy&) = delete;
    ~SocketProxy();

    /// Where to connect to.
    [[nodiscard]] std::string path() const { return folder_ / "socket"; }

    /// Closes what is open. With `isOpen` false, everybody is turned away from then on.
    void cut(bool isOpen);

    /// Lets clients in again.
    void open() { isOpen_ = true; }

private:
    void work();
    /// Hands on what has come; false at the end.
    static bool handOn(int from, int to);

    const std::string target_;
    std::filesystem::path folder_;
    int listener_;
    std::list<std::pair<int, int>> pairs_;
    std::atomic<bool> isOpen_ = true;
    std::atomic<bool> isCutting_ = false;
    std::atomic<bool> isEnding_ = false;
    std::thread thread_;
};

} // namespace velloran::tests
