#pragma once

#include "base/Moment.h"
#include "model/MouseButton.h"
#include "platform/PointerEvents.h"

#include <atomic>
#include <memory>
#include <utility>

namespace velloran {

/// Posts single clicks where the pointer is. Used on one thread at a time, but for what says otherwise.
class ClickEngine {
public:
    enum class Button { left, right, middle };

    /// Without `events` there is nothing to click with, and a click is nothing.
    explicit ClickEngine(std::shared_ptr<platform::PointerEvents> events) : events_(std::move(events)) {}

    ClickEngine(const ClickEngine&) = delete;
    ClickEngine& operator=(const ClickEngine&) = delete;

    /// Posts a press and a release of the button, sent together, without moving the pointer. A half that cannot be made
    /// is left out; nothing is reported.
    void post(Button button) const;

    /// One click more has been handed over, to be posted at that moment. On the thread that hands over.
    void noteHandedOver(Moment due);

    /// One of them is posted. From any thread.
    void notePosted() { --clicksUnderWay_; }

    /// Whether another click would pile up: behind one that should have been posted by now, or that a slow desktop has
    /// yet to take. On the thread that hands over.
    [[nodiscard]] bool isBehind(Moment now) const;

private:
    const std::shared_ptr<platform::PointerEvents> events_;
    std::atomic<int> clicksUnderWay_ = 0;
    /// Of the click that was handed over last.
    Moment lastDue_;
};

/// The engine's button for a configured one.
ClickEngine::Button engineButton(MouseButton button);

} // namespace velloran
