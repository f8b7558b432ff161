#include "async/ThreadQueue.h"

#include "async/startThread.h"
#include "async/wakePromptly.h"
#include "base/fatal.h"

namespace velloran {

ThreadQueue::ThreadQueue(const std::string& label)
    : timer_(MonotonicTimer::Reading::waits), thread_(startThread(label, [this] { work(); })) {
    if (!thread_.joinable()) {
        fatalError("The system grants no thread");
    }
}

ThreadQueue::~ThreadQueue() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        timer_.arm(Moment::min());
    }
    thread_.join();
}

void ThreadQueue::asyncAt(Moment due, std::function<void()> job) {
    bool isFirst = false;
    {
        const std::lock_guard lock(mutex_);
        jobs_.emplace_back(due, std::move(job));
        isFirst = jobs_.size() == 1;
    }
    // Not under the lock: the thread of a job that is due wakes at once, would find the lock taken, and then comes only
    // when this one goes to sleep.
    if (isFirst) {
        timer_.arm(due);
    }
}

void ThreadQueue::work() {
    wakePromptly();
    std::unique_lock lock(mutex_);
    while (!isEnding_ || !jobs_.empty()) {
        const bool isDue = !jobs_.empty() && (isEnding_ || jobs_.front().first <= std::chrono::steady_clock::now());
        if (!isDue) {
            // Nobody armed it for one that was not the first when it was handed over. Even where it was, whoever handed
            // over the one in front of it may have armed it for that just now.
            if (!jobs_.empty()) {
                timer_.arm(jobs_.front().first);
            }
            lock.unlock();
            timer_.take();
            lock.lock();
            continue;
        }
        {
            const std::function<void()> job = std::move(jobs_.front().second);
            jobs_.pop_front();
            lock.unlock();
            job();
        } // what the job holds is let go of outside the lock
        lock.lock();
    }
}

} // namespace velloran
