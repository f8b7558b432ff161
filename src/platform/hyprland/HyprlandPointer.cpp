#include "platform/hyprland/HyprlandPointer.h"

#include "platform/hyprland/reply.h"

#include <utility>

namespace velloran::platform::hyprland {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto whereIsThePointer = "j/cursorpos";
/// So long a question without an answer keeps others from being asked.
constexpr std::uint64_t longestLateness = nanosecondsPerSecond;

} // namespace

HyprlandPointer::HyprlandPointer(EventLoop& loop, std::string socket)
    : loop_(loop), socket_(std::move(socket)), parts_(partsWhen(true)) {}

Desktop HyprlandPointer::partsWhen(bool isAnswered) {
    Desktop parts;
    // Not owned: this is no more shared than its socket.
    parts.pointer = {std::shared_ptr<PointerPosition>(std::shared_ptr<void>(), this),
                     "Hyprland is asked over its socket where the pointer is.",
                     isAnswered ? ""
                                : "Hyprland does not say at the moment where the pointer is, so the still-mouse rule "
                                  "lets no click through."};
    return parts;
}

bool HyprlandPointer::waitForAnswer(std::chrono::milliseconds atMost) {
    auto question = Question::ask(socket_, whereIsThePointer);
    if (!question) {
        return false;
    }
    isAnswered_ = answerWithin(std::move(question), atMost).has_value();
    parts_.set(partsWhen(isAnswered_));
    return true;
}

std::optional<Point> HyprlandPointer::currentPosition() {
    if (isStillOpen()) {
        return std::nullopt;
    }
    auto question = Question::ask(socket_, whereIsThePointer);
    const auto place = question ? answerWithin(std::move(question), longestWait) : std::nullopt;
    tell(place.has_value());
    return place;
}

std::optional<Point> HyprlandPointer::answerWithin(std::unique_ptr<Question> question,
                                                   std::chrono::milliseconds atMost) {
    const auto end = Clock::now() + atMost;
    while (question->wait(end)) {
        if (const auto place = placeIn(question->answer())) {
            return place;
        }
    }
    if (!question->isOver()) {
        late_ = std::move(question);
        givingUp_ = ScheduledCall(loop_, loop_.callAfter(longestLateness, [this] { late_.reset(); }));
    }
    return std::nullopt;
}

/// Whether an earlier question has no end yet: a Hyprland that does not get round to one is not asked another.
bool HyprlandPointer::isStillOpen() {
    const auto now = Clock::now();
    while (late_ && late_->wait(now)) {
        // What it says now is of another time.
        if (late_->isOver() || placeIn(late_->answer())) {
            late_.reset();
            givingUp_.cancel();
        }
    }
    return late_ != nullptr;
}

void HyprlandPointer::tell(bool isAnswered) {
    if (std::exchange(isAnswered_, isAnswered) != isAnswered) {
        // Whoever asks is in the middle of something.
        telling_ = ScheduledCall(loop_, loop_.post([this] { parts_.set(partsWhen(isAnswered_)); }));
    }
}

} // namespace velloran::platform::hyprland
