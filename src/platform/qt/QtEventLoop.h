#pragma once

#include "async/EventLoop.h"
#include "async/MonotonicTimer.h"
#include "platform/qt/QuietMoment.h"

#include <QObject>
#include <QSocketNotifier>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace velloran::platform::qt {

/// The event loop on the toolkit's own. Waiting goes through one timer descriptor on the monotonic clock, armed for the
/// nearest deadline: it is ten times as punctual as the toolkit's timers. Needs the toolkit's application object, and
/// lives on its thread.
class QtEventLoop final : public QObject, public EventLoop {
public:
    /// Ends the program with a fatal error when the system grants no timer descriptor.
    QtEventLoop();
    QtEventLoop(const QtEventLoop&) = delete;
    QtEventLoop& operator=(const QtEventLoop&) = delete;
    ~QtEventLoop() override;

    Date now() const override;
    Moment monotonicNow() const override;
    CallId post(Function function) override;
    void postFromAnyThread(Function function) override;
    CallId callAfter(std::uint64_t nanoseconds, Function function) override;
    void cancel(CallId call) override;
    std::unique_ptr<Watch> watch(int fileDescriptor, Readiness readiness, Function function) override;

    void keepQuiet(Moment moment) override { quiet_.set(moment); }

    std::unique_ptr<SerialQueue> makeSerialQueue(std::string label) override;

protected:
    bool event(QEvent* event) override;

private:
    using Deadline = std::pair<Moment, std::uint64_t>; // and identifier

    void requestTurn();
    void takeOver();
    void runPosted();
    void runDue();
    void arm();

    std::uint64_t lastId_ = 0;
    std::deque<std::pair<std::uint64_t, Function>> posted_;
    bool isTurnRequested_ = false;
    std::mutex handedOverMutex_; // guards what follows
    std::vector<Function> handedOver_;

    std::map<Deadline, Function> timed_;
    std::unordered_map<std::uint64_t, Moment> deadlines_;
    const MonotonicTimer timer_;
    std::optional<Moment> armedFor_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QuietMoment quiet_;
};

} // namespace velloran::platform::qt
