#include "fakes/VirtualLoop.h"

#include "async/ThreadQueue.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>
#include <utility>
#include <vector>

namespace velloran::fakes {

namespace {

/// Some day in 2026, with a fraction, so that nothing depends on round numbers.
constexpr Date start(801234567.25);

std::uint64_t toNanoseconds(double seconds) {
    return static_cast<std::uint64_t>(std::llround(seconds * static_cast<double>(nanosecondsPerSecond)));
}

} // namespace

class VirtualLoop::Queue final : public SerialQueue {
public:
    explicit Queue(VirtualLoop& loop) : loop_(loop) {}

    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    ~Queue() override {
        loop_.cancel(turn_);
        while (!jobs_.empty()) {
            doFirst();
        }
    }

    void asyncAt(Moment due, std::function<void()> job) override {
        jobs_.emplace_back(due, std::move(job));
        if (turn_ == CallId::none) {
            askForTurn();
        }
    }

private:
    void askForTurn() {
        turn_ = loop_.callAfter(nanosecondsBetween(loop_.monotonicNow(), jobs_.front().first), [this] {
            turn_ = CallId::none;
            while (!jobs_.empty() && jobs_.front().first <= loop_.monotonicNow()) {
                doFirst();
            }
            if (!jobs_.empty() && turn_ == CallId::none) {
                askForTurn();
            }
        });
    }

    void doFirst() {
        const auto job = std::move(jobs_.front().second);
        jobs_.pop_front();
        job();
    }

    VirtualLoop& loop_;
    std::deque<std::pair<Moment, std::function<void()>>> jobs_;
    CallId turn_ = CallId::none;
};

class VirtualLoop::PromptThreadQueue final : public SerialQueue {
public:
    explicit PromptThreadQueue(const std::string& label) : queue_(label) {}

    void asyncAt(Moment /*due*/, std::function<void()> job) override { queue_.async(std::move(job)); }

private:
    ThreadQueue queue_;
};

class VirtualLoop::VirtualWatch final : public EventLoop::Watch {
public:
    VirtualWatch(VirtualLoop& loop, const pollfd& descriptor, Function function)
        : loop_(loop),
          place_(loop.watches_.emplace(loop.watches_.end(), descriptor,
                                       std::make_shared<Function>(std::move(function)))) {}

    VirtualWatch(const VirtualWatch&) = delete;
    VirtualWatch& operator=(const VirtualWatch&) = delete;

    ~VirtualWatch() override { loop_.watches_.erase(place_); }

private:
    VirtualLoop& loop_;
    Watches::iterator place_;
};

VirtualLoop::~VirtualLoop() {
    takeOver();
    // Letting go of a call may cancel others, so each leaves the maps before it is destroyed.
    while (!calls_.empty()) {
        const auto node = calls_.extract(calls_.begin());
        due_.erase(node.key().second);
    }
}

Date VirtualLoop::now() const {
    return start + (static_cast<double>(elapsed_) / static_cast<double>(nanosecondsPerSecond) + wallShift_);
}

Moment VirtualLoop::monotonicNow() const {
    return later(Moment(), elapsed_);
}

EventLoop::CallId VirtualLoop::post(Function function) {
    return callAfter(0, std::move(function));
}

void VirtualLoop::postFromAnyThread(Function function) {
    const std::lock_guard lock(handedOverMutex_);
    handedOver_.push_back(std::move(function));
}

EventLoop::CallId VirtualLoop::callAfter(std::uint64_t nanoseconds, Function function) {
    const std::uint64_t id = ++lastId_;
    const std::uint64_t due = elapsed_ + nanoseconds;
    // In this order: a moment without a call does no harm when there is no memory for the second of them.
    due_.emplace(id, due);
    calls_.emplace(std::pair(due, id), std::move(function));
    return CallId{id};
}

void VirtualLoop::cancel(CallId call) {
    const auto id = static_cast<std::uint64_t>(call);
    const auto found = due_.find(id);
    if (found == due_.end()) {
        return;
    }
    const auto node = calls_.extract(std::pair(found->second, id));
    due_.erase(found);
}

std::unique_ptr<EventLoop::Watch> VirtualLoop::watch(int fileDescriptor, Readiness readiness, Function function) {
    const short awaited = readiness == Readiness::readable ? POLLIN : POLLOUT;
    return std::make_unique<VirtualWatch>(*this, pollfd{fileDescriptor, awaited, 0}, std::move(function));
}

std::unique_ptr<SerialQueue> VirtualLoop::makeSerialQueue(std::string label) {
    queueLabel_ = std::move(label);
    if (usesThreads) {
        return std::make_unique<PromptThreadQueue>(queueLabel_);
    }
    return std::make_unique<Queue>(*this);
}

void VirtualLoop::runDue() {
    advanceNanoseconds(0);
}

void VirtualLoop::advance(double seconds) {
    advanceNanoseconds(toNanoseconds(seconds));
}

void VirtualLoop::advanceNanoseconds(std::uint64_t nanoseconds) {
    const std::uint64_t end = elapsed_ + nanoseconds;
    takeOver();
    while (!calls_.empty() && calls_.begin()->first.first <= end) {
        runNext();
        takeOver();
    }
    elapsed_ = std::max(elapsed_, end);
}

void VirtualLoop::spend(double seconds) {
    elapsed_ += toNanoseconds(seconds);
}

bool VirtualLoop::runNext() {
    takeOver();
    if (calls_.empty()) {
        return false;
    }
    const auto node = calls_.extract(calls_.begin());
    due_.erase(node.key().second);
    elapsed_ = std::max(elapsed_, node.key().first);
    node.mapped()();
    return true;
}

void VirtualLoop::look() {
    std::vector<pollfd> descriptors;
    std::vector<std::weak_ptr<Function>> functions;
    for (const auto& [descriptor, function] : watches_) {
        descriptors.push_back(descriptor);
        functions.emplace_back(function);
    }
    poll(descriptors.data(), descriptors.size(), 0);
    for (std::size_t i = 0; i < descriptors.size(); ++i) {
        // One that has ended on the way is not called any more, and a function lasts as long as its call.
        const auto function = functions[i].lock();
        if (function && descriptors[i].revents != 0) {
            (*function)();
        }
    }
}

void VirtualLoop::takeOver() {
    const std::lock_guard lock(handedOverMutex_);
    for (Function& function : handedOver_) {
        post(std::move(function));
    }
    handedOver_.clear();
}

} // namespace velloran::fakes
