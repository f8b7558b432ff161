#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace velloran::tests {

/// Takes requests at a socket as Hyprland does, and answers as a test says, on a thread of its own.
class FakeHyprland {
public:
    /// Listens at `path`, which must not exist.
    explicit FakeHyprland(std::string path);
    FakeHyprland(const FakeHyprland&) = delete;
    FakeHyprland& operator=(const FakeHyprland&) = delete;
    /// Ends as a crash would.
    ~FakeHyprland();

    /// From now on each request is answered with these pieces, each sent when the one before it has been read, and then
    /// the connection is ended. None of them is an end without a word.
    void answerWith(std::vector<std::string> pieces);

    /// From now on requests are taken in and not answered.
    void holdAnswers();

    /// Answers those that were not, and ends their connections. Further ones are held as before.
    void answerHeld(const std::string& answer);

    /// What was asked so far.
    std::vector<std::string> requests();

    /// Waits until that many were asked; false when they are not within ten seconds.
    bool awaitRequests(std::size_t number);

private:
    void work();
    void serve(int connection);
    void awaitRead(int connection);

    const std::string path_;
    const int listener_;
    std::array<int, 2> wakeUp_{-1, -1};
    std::mutex mutex_;
    std::condition_variable asked_;
    std::vector<std::string> requests_;
    std::vector<std::string> pieces_;
    bool isHolding_ = false;
    std::vector<int> held_;
    std::thread thread_;
};

} // namespace velloran::tests
