#pragma once

#include "model/MouseButton.h"
#include "platform/PointerEvents.h"

#include <memory>
#include <utility>

namespace velloran {

/// Posts single clicks where the pointer is. Used on one thread at a time.
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

private:
    const std::shared_ptr<platform::PointerEvents> events_;
};

/// The engine's button for a configured one.
ClickEngine::Button engineButton(MouseButton button);

} // namespace velloran
