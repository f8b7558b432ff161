#include "async/ThreadQueue.h"

#include <pthread.h>
#include <sys/prctl.h>

#include <utility>

namespace velloran {

namespace {

constexpr std::size_t threadNameLength = 15;

} // namespace

ThreadQueue::ThreadQueue(const std::string& label) : thread_([this, label] { work(label); }) {}

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

void ThreadQueue::work(const std::string& label) {
    // Neither call can fail in a way that would matter: the name is for people, the slack for the last microseconds.
    pthread_setname_np(pthread_self(), label.substr(0, threadNameLength).c_str());
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
