#pragma once

#include "engine/ReferenceRun.h"
#include "engine/RunEvent.h"
#include "engine/RunRules.h"
#include "engine/StoreTest.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloran {

/// A real store in virtual time to which events happen: under the rules, and beside the reference until somebody who is
/// told of a change interrupts. What comes of an interruption hangs on what was told until then, and of that the
/// reference knows nothing.
class RunPlay : public StoreTest {
public:
    RunPlay();
    RunPlay(const RunPlay&) = delete;
    RunPlay& operator=(const RunPlay&) = delete;
    ~RunPlay() override;

    /// Has all of it happen, then a stop and a minute of rest. What was wrong, and when; nothing if nothing was.
    std::optional<std::string> play(const std::vector<RunEvent>& events);

    [[nodiscard]] std::int64_t clicks() const { return rules_.clicksPosted(); }

    [[nodiscard]] std::int64_t interrupted() const { return interrupted_; }

private:
    class TellingSounds;

    struct Interruption {
        /// How many notifications come before it.
        int notifications;
        int action;
    };

    void TestBody() override {}

    void happen(const RunEvent& event);
    void start();
    void stop();
    void press();
    void edit(const std::function<void(AutoClickerConfig&)>& change);
    void permit(bool isPermitted);
    void report();
    void setClock(int value);
    void pass(ReferenceRun::Time span);
    void handedOver();
    void interrupt();
    void act(int action);
    [[nodiscard]] bool isAccepted() const;
    std::optional<std::string> complaint();
    std::optional<std::string> compareClicks();

    RunRules rules_;
    ReferenceRun reference_;
    std::unique_ptr<TellingSounds> sounds_;
    Date beginning_;
    bool isPointerMoving_ = false;
    bool isClockSet_ = false;
    std::vector<ReferenceRun::Time> posted_;
    /// So many of them were compared already.
    std::size_t compared_ = 0;
    int settingsOpened_ = 0;
    int prompts_ = 0;
    std::vector<Interruption> interruptions_;
    std::int64_t interrupted_ = 0;
    std::vector<Subscription> subscriptions_;
};

} // namespace velloran
