#pragma once

#include "async/EventLoop.h"
#include "async/Published.h"
#include "platform/Desktop.h"
#include "platform/PointerPosition.h"
#include "platform/hyprland/Question.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

namespace velloran::platform::hyprland {

/// Where the pointer is, as Hyprland answers on its socket. Each question has a connection of its own, so a Hyprland
/// that goes and comes back is followed. An answer that is late, or none, is no place: what is behind in time may hide
/// a motion. Main thread.
class HyprlandPointer final : public PointerPosition {
public:
    /// What a question waits for its answer at most. While one is open that was not answered in that time, nobody else
    /// waits, and nothing is asked; it is given up after a second.
    static constexpr std::chrono::milliseconds longestWait{50};

    /// `socket` is where Hyprland takes requests. Nothing is asked yet.
    HyprlandPointer(EventLoop& loop, std::string socket);
    HyprlandPointer(const HyprlandPointer&) = delete;
    HyprlandPointer& operator=(const HyprlandPointer&) = delete;
    ~HyprlandPointer() override = default;

    /// Gives Hyprland that long for a first answer, by which the part is told from the beginning. For the start of the
    /// program. False where nobody takes the question.
    bool waitForAnswer(std::chrono::milliseconds atMost);

    /// The pointer's position alone: this, with a limit for as long as the last question has no answer. Told anew in a
    /// turn of the loop. This has to outlive whoever uses it.
    [[nodiscard]] const Published<Desktop>& parts() const { return parts_; }

    std::optional<Point> currentPosition() override;

private:
    [[nodiscard]] Desktop partsWhen(bool isAnswered);
    std::optional<Point> answerWithin(std::unique_ptr<Question> question, std::chrono::milliseconds atMost);
    bool isStillOpen();
    void tell(bool isAnswered);

    EventLoop& loop_;
    const std::string socket_;
    /// One whose answer did not come in time.
    std::unique_ptr<Question> late_;
    ScheduledCall givingUp_;
    bool isAnswered_ = true;
    Published<Desktop> parts_;
    ScheduledCall telling_;
};

} // namespace velloran::platform::hyprland
