#pragma once

#include "async/EventLoop.h"
#include "async/SerialQueue.h"

#include <poll.h>

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace velloran::fakes {

/// An event loop whose time stands still until a test moves it. Nothing runs by itself: calls happen inside the
/// functions below, on the test's thread, each at exactly the moment it was asked for.
class VirtualLoop final : public EventLoop {
public:
    VirtualLoop() = default;
    VirtualLoop(const VirtualLoop&) = delete;
    VirtualLoop& operator=(const VirtualLoop&) = delete;
    ~VirtualLoop() override;

    Date now() const override;
    /// That long after the beginning of the clock.
    Moment monotonicNow() const override;
    CallId post(Function function) override;
    void postFromAnyThread(Function function) override;
    CallId callAfter(std::uint64_t nanoseconds, Function function) override;
    void cancel(CallId call) override;
    std::unique_ptr<Watch> watch(int fileDescriptor, Readiness readiness, Function function) override;

    void keepQuiet(Moment moment) override { quietMoment_ = moment; }

    /// A queue whose jobs run in turns of this loop, or at its destruction; with `usesThreads` one on a real thread,
    /// which knows nothing of virtual time: there everything is due at once.
    std::unique_ptr<SerialQueue> makeSerialQueue(std::string label) override;
    bool usesThreads = false;

    /// Makes every call that is due now, those that they post included.
    void runDue();

    /// Lets that much time pass and makes every call that falls due on the way. A call at the very end is made.
    void advance(double seconds);
    void advanceNanoseconds(std::uint64_t nanoseconds);

    /// Goes on to the next call, however far away, and makes it. False when there is none.
    bool runNext();

    /// Lets that much time pass inside a call, as slow work does. What falls due meanwhile is late.
    void spend(double seconds);

    /// Sets the wall clock forward or back; waiting goes on unmoved.
    void shiftWallClock(double seconds) { wallShift_ += seconds; }

    /// Looks at the watched descriptors and makes one call for each that is ready.
    void look();

    /// Nanoseconds since the loop was made.
    [[nodiscard]] std::uint64_t elapsed() const { return elapsed_; }

    [[nodiscard]] std::size_t pendingCalls() const { return calls_.size(); }

    /// The moment that was to be kept quiet last.
    [[nodiscard]] Moment quietMoment() const { return quietMoment_; }

    /// Label of the queue made last.
    [[nodiscard]] const std::string& queueLabel() const { return queueLabel_; }

private:
    class Queue;
    class PromptThreadQueue;
    class VirtualWatch;
    /// In the order of asking.
    using Watches = std::list<std::pair<pollfd, std::shared_ptr<Function>>>;

    void takeOver();

    std::uint64_t elapsed_ = 0;
    double wallShift_ = 0.0;
    std::uint64_t lastId_ = 0;
    std::map<std::pair<std::uint64_t, std::uint64_t>, Function> calls_;
    /// When each pending call is due, by identifier.
    std::map<std::uint64_t, std::uint64_t> due_;
    std::mutex handedOverMutex_; // guards what follows
    std::vector<Function> handedOver_;

    Moment quietMoment_ = Moment::min();
    Watches watches_;
    std::string queueLabel_;
};

} // namespace velloran::fakes
