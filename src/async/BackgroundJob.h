#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace velloran {

/// One job on a thread of its own, which starts with the first request and sleeps between them. The job is done again
/// after every request; requests that come before it begins are answered by doing it once. For work that may be held up
/// for any time, by a disk for instance, without anybody waiting for it. Only while the system grants no thread, a
/// request does the job itself. All functions are called on one thread.
class BackgroundJob {
public:
    /// The thread carries the label (cut to the 15 characters the system keeps). The job must not throw. It may outlive
    /// this object, so it has to share the ownership of what it uses.
    BackgroundJob(std::string label, std::function<void()> job);
    BackgroundJob(const BackgroundJob&) = delete;
    BackgroundJob& operator=(const BackgroundJob&) = delete;
    /// Waits for nothing: the job is not begun again, and one that is under way is left to itself.
    ~BackgroundJob();

    /// Has the job done, from its beginning, at some time after this call.
    void request();

    /// Waits until every request is answered. False when that takes longer than `atMost`.
    [[nodiscard]] bool waitUntilDone(std::chrono::milliseconds atMost) const;

private:
    struct Shared;

    static void work(Shared& shared);
    static void doOnce(Shared& shared, std::unique_lock<std::mutex>& lock);

    std::string label_;
    /// Outlives this object while the job is under way.
    std::shared_ptr<Shared> shared_;
    std::thread thread_;
};

} // namespace velloran
