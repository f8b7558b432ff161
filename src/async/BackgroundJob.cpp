#include "async/BackgroundJob.h"

#include "async/startThread.h"

#include <condition_variable>
#include <utility>

namespace velloran {

struct BackgroundJob::Shared {
    explicit Shared(std::function<void()> theJob) : job(std::move(theJob)) {}

    [[nodiscard]] bool isIdle() const { return !isRequested && !isUnderWay; }

    const std::function<void()> job;
    std::mutex mutex;
    std::condition_variable changed;
    // Guarded by the mutex.
    bool isRequested = false;
    bool isUnderWay = false;
    bool isEnding = false;
};

BackgroundJob::BackgroundJob(std::string label, std::function<void()> job)
    : label_(std::move(label)), shared_(std::make_shared<Shared>(std::move(job))) {}

BackgroundJob::~BackgroundJob() {
    if (!thread_.joinable()) {
        return;
    }
    bool isUnderWay = false;
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->isEnding = true;
        isUnderWay = shared_->isUnderWay;
    }
    shared_->changed.notify_all();
    if (isUnderWay) {
        thread_.detach();
    } else {
        thread_.join();
    }
}

void BackgroundJob::request() {
    {
        const std::lock_guard lock(shared_->mutex);
        shared_->isRequested = true;
    }
    shared_->changed.notify_all();
    if (thread_.joinable()) {
        return;
    }
    thread_ = startThread(label_, [shared = shared_] { work(*shared); });
    if (!thread_.joinable()) {
        // Somebody waits after all, rather than that nothing is done.
        std::unique_lock lock(shared_->mutex);
        doOnce(*shared_, lock);
    }
}

bool BackgroundJob::waitUntilDone(std::chrono::milliseconds atMost) const {
    std::unique_lock lock(shared_->mutex);
    return shared_->changed.wait_for(lock, atMost, [this] { return shared_->isIdle(); });
}

void BackgroundJob::work(Shared& shared) {
    std::unique_lock lock(shared.mutex);
    while (true) {
        shared.changed.wait(lock, [&] { return shared.isEnding || shared.isRequested; });
        if (shared.isEnding) {
            return;
        }
        doOnce(shared, lock);
    }
}

void BackgroundJob::doOnce(Shared& shared, std::unique_lock<std::mutex>& lock) {
    shared.isRequested = false;
    shared.isUnderWay = true;
    lock.unlock();
    shared.job();
    lock.lock();
    shared.isUnderWay = false;
    shared.changed.notify_all();
}

} // namespace velloran
