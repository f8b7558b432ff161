#pragma once

#include "model/AutoClickerRuntime.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloran {

/// What holds of every run whatever happens, told as it happens: no click but between a start and what ends it, no
/// second loop, no status that is not true, no count of what was not clicked. The first broken rule is kept.
class RunRules {
public:
    /// A start was asked for, which will be accepted or refused.
    void startAsked(bool isAccepted) {
        if (isAccepted) {
            mayClick_ = true;
            isRefusedOverARun_ = false;
        } else {
            isRefusedOverARun_ = mayClick_;
        }
    }

    /// A stop, or what does as much.
    void stopAsked() {
        mayClick_ = false;
        isRefusedOverARun_ = false;
    }

    /// A change of the record. A run that is begun while another one clicks is known by its beginning.
    void told(const AutoClickerRuntime& record) {
        if (record.status == ClickerStatus::completed) {
            mayClick_ = false;
        }
        if (record.startedAt != record_.startedAt || record.clicksCompleted < record_.clicksCompleted) {
            before_ = handedOver_;
        }
        record_ = record;
    }

    void handedOver() {
        require(mayClick_, "a click was handed over that nobody wants");
        require(++sinceRest_ < 5000, "clicks without an end");
        ++handedOver_;
    }

    void posted() { require(++posted_ <= handedOver_, "a click was posted that was not handed over"); }

    /// To be called when everything that is due has happened, with the number of loops that are alive.
    void atRest(const AutoClickerRuntime& record, long loops) {
        sinceRest_ = 0;
        require(loops <= 1, "two loops");
        require((loops == 1) == mayClick_, mayClick_ ? "no loop for the run" : "a loop without a run");
        // After a refusal over a run the status tells of the refusal, or of nothing once that is taken away.
        const bool isStatusTrue = isActive(record.status) == mayClick_ || (mayClick_ && isRefusedOverARun_);
        require(isStatusTrue, "the status is not true");
        require(record.clicksCompleted == handedOver_ - before_, "the count is not that of the clicks");
        require(record_ == record, "what was told last is not what is there");
    }

    [[nodiscard]] std::int64_t clicksHandedOver() const { return handedOver_; }

    [[nodiscard]] std::int64_t clicksPosted() const { return posted_; }

    [[nodiscard]] const std::optional<std::string>& broken() const { return broken_; }

private:
    void require(bool holds, const char* otherwise) {
        if (!holds && !broken_) {
            broken_ = otherwise;
        }
    }

    bool mayClick_ = false;
    bool isRefusedOverARun_ = false;
    AutoClickerRuntime record_;
    std::int64_t handedOver_ = 0;
    std::int64_t posted_ = 0;
    std::int64_t sinceRest_ = 0;
    /// Handed over before the run of the record.
    std::int64_t before_ = 0;
    std::optional<std::string> broken_;
};

} // namespace velloran
