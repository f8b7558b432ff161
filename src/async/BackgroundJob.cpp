#include "async/BackgroundJob.h"

#include <pthread.h>

#include <condition_variable>
#include <csignal>
#include <mutex>
#include <utility>

namespace velloran {

namespace {

constexpr std::size_t threadNameLength = 15;

} // namespace

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
    // Signals to the process are the main thread's business. A new thread starts with the mask of the one that makes
    // it.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([shared = shared_, name = label_.substr(0, threadNameLength)] {
        pthread_setname_np(pthread_self(), name.c_str());
        work(*shared);
    });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
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
        shared.isRequested = false;
        shared.isUnderWay = true;
        lock.unlock();
        shared.job();
        lock.lock();
        shared.isUnderWay = false;
        shared.changed.notify_all();
    }
}

} // namespace velloran
