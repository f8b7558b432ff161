#include "async/ThreadQueue.h"

#include "async/startThread.h"
#include "base/fatal.h"

#include <sys/prctl.h>

#include <utility>

namespace velloran {

ThreadQueue::ThreadQueue(const std::string& label) : thread_(startThread(label, [this] { work(); })) {
    if (!thread_.joinable()) {
        fatalError("The system grants no thread");
    }
}

ThreadQueue::~ThreadQueue() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void ThreadQueue::async(std::function<void()> job) {
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    changed_.notify_one();
}

void ThreadQueue::work() {
    // Without it the kernel may let each wait run over by 50 microseconds.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return isEnding_ || !jobs_.empty(); });
        if (jobs_.empty()) {
            return;
        }
        {
            const std::function<void()> job = std::move(jobs_.front());
            jobs_.pop_front();
            lock.unlock();
            job();
        } // what the job holds is let go of outside the lock
        lock.lock();
    }
}

} // namespace velloran
