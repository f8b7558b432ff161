#pragma once

#include "async/SerialQueue.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

namespace velloran {

/// The serial queue of real loops: one thread of its own, started at once. The thread carries the label, takes no
/// signals and asks for timers without slack. Without a thread the program ends. `async` may be called from any thread.
class ThreadQueue final : public SerialQueue {
public:
    explicit ThreadQueue(const std::string& label);
    ThreadQueue(const ThreadQueue&) = delete;
    ThreadQueue& operator=(const ThreadQueue&) = delete;
    ~ThreadQueue() override;

    void async(std::function<void()> job) override;

private:
    void work();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> jobs_;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace velloran
