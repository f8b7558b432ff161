#include "ui/cards/RunModel.h"

#include "ui/utf8.h"

#include <utility>

namespace velloran {

namespace {

/// How long after a click of our own its echo may still reach the window, in seconds.
constexpr double echoTime = 0.15;

} // namespace

RunModel::RunModel(AutoClickerStore& store, EventLoop& loop, QObject* parent)
    : QObject(parent), store_(store), loop_(loop), shown_(current()), throttle_(loop, [this] { show(); }) {
    subscriptions_.push_back(store.runtime().stream().subscribe([this](const AutoClickerRuntime& runtime) {
        noteClicks(runtime);
        if (isSeen_ || runtime.status != shown_.runtime.status) {
            throttle_.request();
        }
    }));
    subscriptions_.push_back(
        store.hasAccessibilityPermission().stream().subscribe([this](const bool&) { throttle_.request(); }));
    // Progress is measured against the count that is configured now: an edit shows at once.
    subscriptions_.push_back(store.config.stream().subscribe([this](const AutoClickerConfig& config) {
        const auto before = std::exchange(shown_.progress, RunProgress::of(shown_.runtime, config));
        if (before != shown_.progress) {
            emit progressChanged();
        }
    }));
}

QString RunModel::headline() const {
    return text(::velloran::headline(shown_.runtime.status));
}

bool RunModel::isFlying() const {
    switch (shown_.runtime.status) {
    case ClickerStatus::arming:
    case ClickerStatus::delayed:
    case ClickerStatus::running:
        return true;
    default:
        return false;
    }
}

double RunModel::progress() const {
    return shown_.progress.value_or(RunProgress()).fraction();
}

QString RunModel::progressText() const {
    return text(shown_.progress.value_or(RunProgress()).text());
}

void RunModel::setSeen(bool isSeen) {
    if (isSeen == isSeen_) {
        return;
    }
    isSeen_ = isSeen;
    emit seenChanged();
    if (isSeen_) {
        show();
    }
}

void RunModel::start() {
    store_.start();
}

void RunModel::stop() {
    store_.stop();
}

bool RunModel::isEchoOfOwnClick() const {
    if (!lastOwnClick_ || runButton_ != MouseButton::left) {
        return false;
    }
    const double age = loop_.now() - *lastOwnClick_;
    return age >= 0.0 && age < echoTime;
}

void RunModel::refreshPermission() {
    store_.refreshPermission();
}

void RunModel::openAccessibilitySettings() {
    store_.openAccessibilitySettings();
}

RunModel::Shown RunModel::current() const {
    const AutoClickerRuntime& runtime = store_.runtime().get();
    return {runtime, text(runtime.message()), RunProgress::of(runtime, store_.config.get()),
            store_.hasAccessibilityPermission().get()};
}

void RunModel::noteClicks(const AutoClickerRuntime& runtime) {
    if (runtime.startedAt != runStartedAt_) {
        // A run keeps the button that the configuration named at its start.
        runStartedAt_ = runtime.startedAt;
        runButton_ = store_.config.get().mouseButton;
        countedClicks_ = 0;
    }
    if (runtime.clicksCompleted > countedClicks_) {
        countedClicks_ = runtime.clicksCompleted;
        lastOwnClick_ = loop_.now();
    }
}

void RunModel::show() {
    const Shown before = std::exchange(shown_, current());
    if (before.runtime.status != shown_.runtime.status) {
        emit statusChanged();
    }
    if (before.message != shown_.message) {
        emit messageChanged();
    }
    if (before.progress != shown_.progress) {
        emit progressChanged();
    }
    if (before.hasPermission != shown_.hasPermission) {
        emit permissionChanged();
    }
}

} // namespace velloran
