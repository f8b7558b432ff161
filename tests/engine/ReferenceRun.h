#pragma once

#include "model/AutoClickerConfig.h"
#include "model/ClickerStatus.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace velloran {

/// What a run has to do, written down once as states and events and without any of what the store is made of: no task,
/// no queue, no observers. Driven beside the store, it says what the store has to show and what has to be clicked.
///
/// Times are nanoseconds since the beginning of the test; dates are such times moved by what the clock was set.
class ReferenceRun {
public:
    using Time = std::int64_t;

    /// The record of the store, in these times.
    struct Record {
        ClickerStatus status = ClickerStatus::idle;
        std::int64_t clicksCompleted = 0;
        std::optional<std::int64_t> clicksRemaining;
        std::optional<Time> startedAt;
        std::optional<Time> nextClickAt;
        std::optional<Time> countdownRemaining;
        std::optional<std::string> errorMessage;
        bool stationaryWaitActive = false;
    };

    // What happens to it.

    void start();
    void stop();
    void toggle();

    void edit(const AutoClickerConfig& config) { config_ = config; }

    /// Whether clicks are permitted from now on; the store does not hear of it by this.
    void permit(bool isPermitted) { isPermitted_ = isPermitted; }

    /// The desktop says that the permission may have changed.
    void permissionReported();
    void permissionRefreshed();

    void pointerJumped() { hasJumped_ = true; }

    void pointerKeepsMoving(bool isMoving) { isMoving_ = isMoving; }

    void clockSet(Time by) { clock_ += by; }

    /// So much time passes, and everything happens that falls due.
    void pass(Time span);

    // What there has to be to see.

    [[nodiscard]] const Record& record() const { return record_; }

    [[nodiscard]] bool showsPermission() const { return showsPermission_; }

    /// Whether something is under way that may click.
    [[nodiscard]] bool isUnderWay() const { return step_ != Step::none; }

    [[nodiscard]] std::int64_t handedOver() const { return handedOver_; }

    /// When clicks were posted.
    [[nodiscard]] const std::vector<Time>& posted() const { return posted_; }

    [[nodiscard]] int settingsOpened() const { return settingsOpened_; }

    [[nodiscard]] int prompts() const { return prompts_; }

private:
    /// What the run does next, at `wake_`.
    enum class Step { none, begin, countDown, clickWhenDue, clickWhenStill };

    [[nodiscard]] Time date() const { return now_ + clock_; }

    /// Once a click is handed over its moment is the present until it is past.
    [[nodiscard]] Time dateBehind(Time handedOver) const;
    void clearError();
    void take(Step step);
    void countDown();
    void schedule();
    void clickWhenStill();
    void click();
    bool isStill();

    AutoClickerConfig config_;
    bool isPermitted_ = true;
    bool isMoving_ = false;
    bool hasJumped_ = false;
    Time now_ = 0;
    Time clock_ = 0;

    Record record_;
    bool showsPermission_ = true;
    int settingsOpened_ = 0;
    int prompts_ = 0;

    /// The run: what it was started with, and where it is.
    AutoClickerConfig settings_;
    Step step_ = Step::none;
    Time wake_ = 0;
    Time countdownEnd_ = 0;
    /// The date of the next click, and when the next one or, until that is known, the last one is due.
    Time nextClick_ = 0;
    Time due_ = 0;
    bool hasWaitedForStillness_ = false;
    /// Since when the pointer has been still at every look; nothing before the first.
    std::optional<Time> stillSince_;

    std::int64_t handedOver_ = 0;
    std::deque<Time> pending_;
    std::vector<Time> posted_;
};

} // namespace velloran
