#include "platform/qt/QtEventLoop.h"

#include "async/ThreadQueue.h"

#include <QCoreApplication>
#include <QEvent>

#include <sys/prctl.h>

#include <algorithm>
#include <chrono>

namespace velloran::platform::qt {

namespace {

/// Between 1970-01-01 and 2001-01-01.
constexpr std::chrono::seconds referenceDateInUnixTime(978'307'200);

QEvent::Type turnEvent() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

class NotifierWatch final : public EventLoop::Watch {
public:
    NotifierWatch(int fileDescriptor, EventLoop::Readiness readiness, EventLoop::Function function)
        : notifier_(fileDescriptor,
                    readiness == EventLoop::Readiness::readable ? QSocketNotifier::Read : QSocketNotifier::Write) {
        // The notifier expects to be destroyed inside its signal, and the connection keeps the function meanwhile.
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, std::move(function));
    }

private:
    QSocketNotifier notifier_;
};

} // namespace

QtEventLoop::QtEventLoop() : timer_(MonotonicTimer::Reading::returns) {
    // Without it the kernel may let each wait run over by 50 microseconds.
    prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
    notifier_ = std::make_unique<QSocketNotifier>(timer_.descriptor(), QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] { runDue(); });
}

QtEventLoop::~QtEventLoop() {
    notifier_.reset();
    // Letting go of a function may cancel other calls and ask for new ones, so each leaves its container first.
    for (takeOver(); !posted_.empty() || !timed_.empty(); takeOver()) {
        if (!posted_.empty()) {
            const auto dropped = std::move(posted_.front());
            posted_.pop_front();
        } else {
            const auto dropped = timed_.extract(timed_.begin());
            deadlines_.erase(dropped.key().second);
        }
    }
}

Date QtEventLoop::now() const {
    // The subtraction comes before the conversion: the smaller number keeps finer fractions.
    const std::chrono::duration<double> sinceReference =
        std::chrono::system_clock::now().time_since_epoch() - referenceDateInUnixTime;
    return Date(sinceReference.count());
}

Moment QtEventLoop::monotonicNow() const {
    return std::chrono::steady_clock::now();
}

EventLoop::CallId QtEventLoop::post(Function function) {
    const std::uint64_t id = ++lastId_;
    posted_.emplace_back(id, std::move(function));
    requestTurn();
    return CallId{id};
}

void QtEventLoop::postFromAnyThread(Function function) {
    {
        const std::lock_guard lock(handedOverMutex_);
        handedOver_.push_back(std::move(function));
    }
    QCoreApplication::postEvent(this, new QEvent(turnEvent()));
}

EventLoop::CallId QtEventLoop::callAfter(std::uint64_t nanoseconds, Function function) {
    const std::uint64_t id = ++lastId_;
    const Moment deadline = later(monotonicNow(), nanoseconds);
    timed_.emplace(Deadline(deadline, id), std::move(function));
    deadlines_.emplace(id, deadline);
    arm();
    return CallId{id};
}

void QtEventLoop::cancel(CallId call) {
    const auto id = static_cast<std::uint64_t>(call);
    if (const auto found = deadlines_.find(id); found != deadlines_.end()) {
        const auto node = timed_.extract(Deadline(found->second, id));
        deadlines_.erase(found);
        arm();
        return;
    }
    const auto found =
        std::find_if(posted_.begin(), posted_.end(), [id](const auto& entry) { return entry.first == id; });
    if (found != posted_.end()) {
        const auto dropped = std::move(*found);
        posted_.erase(found);
    }
}

std::unique_ptr<EventLoop::Watch> QtEventLoop::watch(int fileDescriptor, Readiness readiness, Function function) {
    return std::make_unique<NotifierWatch>(fileDescriptor, readiness, std::move(function));
}

std::unique_ptr<SerialQueue> QtEventLoop::makeSerialQueue(std::string label) {
    return std::make_unique<ThreadQueue>(label);
}

bool QtEventLoop::event(QEvent* event) {
    if (event->type() == turnEvent()) {
        runPosted();
        return true;
    }
    return QObject::event(event);
}

void QtEventLoop::requestTurn() {
    if (!isTurnRequested_) {
        isTurnRequested_ = true;
        QCoreApplication::postEvent(this, new QEvent(turnEvent()));
    }
}

void QtEventLoop::takeOver() {
    const std::lock_guard lock(handedOverMutex_);
    for (Function& function : handedOver_) {
        posted_.emplace_back(++lastId_, std::move(function));
    }
    handedOver_.clear();
}

void QtEventLoop::runPosted() {
    isTurnRequested_ = false;
    takeOver();
    // Those posted from inside belong to a later turn, so that posting for ever does not keep out everything else.
    const std::uint64_t last = lastId_;
    while (!posted_.empty() && posted_.front().first <= last) {
        const Function function = std::move(posted_.front().second);
        posted_.pop_front();
        // The function may run an event loop of its own, a dialog's for instance, in which the others must not wait.
        if (!posted_.empty()) {
            requestTurn();
        }
        function();
    }
}

void QtEventLoop::runDue() {
    timer_.take();
    armedFor_.reset();
    const Moment now = monotonicNow();
    while (!timed_.empty() && timed_.begin()->first.first <= now) {
        const auto node = timed_.extract(timed_.begin());
        deadlines_.erase(node.key().second);
        // Before the call, because it may run an event loop of its own.
        arm();
        node.mapped()();
    }
    arm();
}

void QtEventLoop::arm() {
    const auto deadline = timed_.empty() ? std::nullopt : std::optional(timed_.begin()->first.first);
    if (deadline == armedFor_) {
        return;
    }
    armedFor_ = deadline;
    if (deadline) {
        timer_.arm(*deadline);
    } else {
        timer_.disarm();
    }
}

} // namespace velloran::platform::qt
