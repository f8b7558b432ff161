#pragma once

#include "model/MouseButton.h"

namespace velloran {

/// Posts single clicks where the pointer is. Has no state; used on one thread at a time.
class ClickEngine {
public:
    enum class Button { left, right, middle };

    ClickEngine() = default;
    ClickEngine(const ClickEngine&) = delete;
    ClickEngine& operator=(const ClickEngine&) = delete;

    /// Posts a press and a release of the button, sent together, without moving the pointer. A half that cannot be made
    /// is left out; nothing is reported.
    void post(Button button) const;
};

/// The engine's button for a configured one.
ClickEngine::Button engineButton(MouseButton button);

} // namespace velloran
