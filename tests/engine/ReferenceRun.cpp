#include "engine/ReferenceRun.h"

#include "engine/PermissionChecker.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velloran {

namespace {

constexpr ReferenceRun::Time countdownStep = 100'000'000;
constexpr ReferenceRun::Time stillnessPoll = 80'000'000;
/// How long ahead of its moment a click is handed over at most.
constexpr ReferenceRun::Time lead = 3'906'250;

ReferenceRun::Time nanoseconds(double seconds) {
    return std::llround(seconds * 1e9);
}

} // namespace

void ReferenceRun::start() {
    const auto refuse = [this](const std::string& message) {
        record_.status = ClickerStatus::error;
        record_.errorMessage = message;
    };
    if (const auto invalid = config_.validationError()) {
        refuse(*invalid);
        return;
    }
    showsPermission_ = isPermitted_;
    if (!isPermitted_) {
        refuse(PermissionChecker::permissionErrorMessage());
        ++settingsOpened_;
        return;
    }
    settings_ = config_;
    record_ = {};
    record_.status = ClickerStatus::running;
    record_.startedAt = date();
    if (settings_.stopMode == StopMode::after_clicks) {
        record_.clicksRemaining = settings_.maxClicks;
    }
    if (settings_.startDelaySeconds > 0) {
        record_.status = ClickerStatus::delayed;
        record_.countdownRemaining = nanoseconds(settings_.startDelaySeconds);
    }
    stillSince_.reset();
    step_ = Step::begin;
    wake_ = now_;
}

void ReferenceRun::stop() {
    step_ = Step::none;
    if (record_.status == ClickerStatus::completed) {
        return;
    }
    record_.status = ClickerStatus::idle;
    record_.nextClickAt.reset();
    record_.countdownRemaining.reset();
    record_.stationaryWaitActive = false;
}

void ReferenceRun::toggle() {
    if (record_.status == ClickerStatus::delayed || record_.status == ClickerStatus::running) {
        stop();
    } else {
        start();
    }
}

void ReferenceRun::permissionReported() {
    if (!isPermitted_ && isUnderWay()) {
        stop();
    }
    showsPermission_ = isPermitted_;
    if (isPermitted_ && record_.errorMessage == PermissionChecker::permissionErrorMessage()) {
        clearError();
    }
}

void ReferenceRun::permissionRefreshed() {
    prompts_ += isPermitted_ ? 0 : 1;
    showsPermission_ = isPermitted_;
    if (isPermitted_) {
        clearError();
    }
}

void ReferenceRun::clearError() {
    if (record_.status == ClickerStatus::error) {
        record_.status = ClickerStatus::idle;
        record_.errorMessage.reset();
    }
}

void ReferenceRun::pass(Time span) {
    const Time end = now_ + span;
    while (isUnderWay() && wake_ <= end) {
        now_ = std::max(now_, wake_);
        take(step_);
    }
    now_ = end;
    while (!pending_.empty() && pending_.front() <= now_) {
        posted_.push_back(pending_.front());
        pending_.pop_front();
    }
}

ReferenceRun::Time ReferenceRun::dateBehind(Time handedOver) const {
    return date() + std::max<Time>(handedOver - now_, 0);
}

void ReferenceRun::take(Step step) {
    switch (step) {
    case Step::none:
        break;
    case Step::begin:
        countdownEnd_ = date() + nanoseconds(settings_.startDelaySeconds);
        countDown();
        break;
    case Step::countDown:
        countDown();
        break;
    case Step::clickWhenDue:
        if (settings_.requireStationaryMouse) {
            record_.stationaryWaitActive = true;
            hasWaitedForStillness_ = false;
            clickWhenStill();
        } else {
            click();
        }
        break;
    case Step::clickWhenStill:
        clickWhenStill();
        break;
    }
}

void ReferenceRun::countDown() {
    if (date() < countdownEnd_) {
        record_.countdownRemaining = countdownEnd_ - date();
        step_ = Step::countDown;
        wake_ = now_ + countdownStep;
        return;
    }
    if (settings_.startDelaySeconds > 0) {
        record_.countdownRemaining.reset();
        record_.status = ClickerStatus::running;
    }
    nextClick_ = date();
    due_ = now_;
    schedule();
}

void ReferenceRun::schedule() {
    const bool isCounted = settings_.stopMode == StopMode::after_clicks;
    if (isCounted && record_.clicksCompleted >= settings_.maxClicks) {
        record_.status = ClickerStatus::completed;
        record_.nextClickAt.reset();
        record_.clicksRemaining = 0;
        step_ = Step::none;
        return;
    }
    const Time present = std::max(now_, due_);
    const Time ahead = nextClick_ - dateBehind(due_);
    step_ = Step::clickWhenDue;
    wake_ = due_ = present;
    if (ahead > 0) {
        due_ = present + ahead;
        record_.nextClickAt = nextClick_;
        // Neither the last click nor one that depends on the mouse is handed over ahead of time.
        const bool isLast = isCounted && record_.clicksCompleted + 1 == settings_.maxClicks;
        wake_ = isLast || settings_.requireStationaryMouse ? due_ : std::max(due_ - lead, present);
    }
}

void ReferenceRun::clickWhenStill() {
    if (!isStill()) {
        hasWaitedForStillness_ = true;
        step_ = Step::clickWhenStill;
        wake_ = now_ + stillnessPoll;
        return;
    }
    record_.stationaryWaitActive = false;
    if (hasWaitedForStillness_) {
        nextClick_ = date();
    }
    click();
}

void ReferenceRun::click() {
    ++handedOver_;
    pending_.push_back(std::max({due_, now_, pending_.empty() ? 0 : pending_.back()}));
    ++record_.clicksCompleted;
    if (settings_.stopMode == StopMode::after_clicks) {
        record_.clicksRemaining = std::max<std::int64_t>(*settings_.maxClicks - record_.clicksCompleted, 0);
    }
    nextClick_ = std::max(nextClick_ + nanoseconds(settings_.clickIntervalSeconds), dateBehind(due_));
    schedule();
}

bool ReferenceRun::isStill() {
    const bool isFirstLook = !stillSince_;
    if (std::exchange(hasJumped_, false) || isMoving_ || isFirstLook) {
        stillSince_ = date();
        return false;
    }
    return date() - *stillSince_ >= nanoseconds(settings_.stationarySeconds);
}

} // namespace velloran
