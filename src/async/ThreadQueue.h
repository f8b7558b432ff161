#pragma once

#include "async/MonotonicTimer.h"
#include "async/SerialQueue.h"

#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

namespace velloran {

/// The serial queue of real loops: one thread of its own, started at once. The thread carries the label, takes no
/// signals and wakes promptly. Without a thread or a timer the program ends. Jobs may be handed over on
/// any thread; no such call may be under way when the queue is destroyed, even if its job is done.
class ThreadQueue final : public SerialQueue {
public:
    explicit ThreadQueue(const std::string& label);
    ThreadQueue(const ThreadQueue&) = delete;
    ThreadQueue& operator=(const ThreadQueue&) = delete;
    ~ThreadQueue() override;

    void asyncAt(Moment due, std::function<void()> job) override;

private:
    void work();

    /// Wakes the thread when the first job is due. Whoever hands that one over to an empty queue arms it, so that the
    /// thread wakes once for a job, and not also to learn of it; for those behind it the thread does.
    const MonotonicTimer timer_;
    std::mutex mutex_; // guards what follows
    std::deque<std::pair<Moment, std::function<void()>>> jobs_;
    bool isEnding_ = false;

    std::thread thread_;
};

} // namespace velloran
