#pragma once

#include "platform/PointerEvents.h"
#include "platform/portal/ClickSender.h"

#include <memory>
#include <mutex>
#include <vector>

namespace velloran::platform::portal {

/// Clicks through whichever session of the portal there is; without one everything is a no-op. What is said of threads
/// in `PointerEvents` holds for its functions; `use` and `canPost` may be called on any.
class PortalPointerEvents final : public PointerEvents {
public:
    /// From the next click on, that session's; null for none. A click that is being sent goes on to its end.
    void use(std::shared_ptr<ClickSender> sender);

    /// Whether a click would be sent.
    [[nodiscard]] bool canPost() const;

    /// Always nothing: a click needs no place here, and the portal tells none.
    std::optional<Point> location() override { return std::nullopt; }

    std::optional<MouseEvent> makeMouseEvent(MouseEventType type, Point position, EventButton button) override;
    [[nodiscard]] bool waitsForDesktop() const override;
    [[nodiscard]] bool isKeeping() const override;
    void post(const MouseEvent& event) override;
    /// Sends a whole click, and nothing else.
    void flush() override;

private:
    [[nodiscard]] std::shared_ptr<ClickSender> sender() const;

    mutable std::mutex mutex_;
    std::shared_ptr<ClickSender> sender_;
    /// What is posted and not yet flushed, and whether the click that it is of can be made. The poster's thread only.
    std::vector<MouseEvent> pending_;
    bool isClickPossible_ = false;
};

} // namespace velloran::platform::portal
