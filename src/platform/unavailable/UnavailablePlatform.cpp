#include "platform/unavailable/UnavailablePlatform.h"

#include <utility>

namespace velloran::platform::unavailable {

namespace {

class NoPointerEvents final : public PointerEvents {
public:
    std::optional<Point> location() override { return std::nullopt; }

    std::optional<MouseEvent> makeMouseEvent(MouseEventType /*type*/, Point /*position*/,
                                             EventButton /*button*/) override {
        return std::nullopt;
    }

    void post(const MouseEvent& /*event*/) override {}

    void flush() override {}
};

class NoPointerPosition final : public PointerPosition {
public:
    std::optional<Point> currentPosition() override { return std::nullopt; }
};

class NoInputTrust final : public InputTrust {
public:
    NoInputTrust(SystemLog& log, std::string reason) : log_(log), reason_(std::move(reason)) {}

    bool isTrusted() override {
        tellReason();
        return false;
    }

    bool requestPrompt(PromptReason /*reason*/) override {
        tellReason();
        return false;
    }

    void onChanged(std::function<void()> /*changed*/) override {}

private:
    void tellReason() {
        if (!std::exchange(isReasonTold_, true)) {
            log_.write(reason_);
        }
    }

    SystemLog& log_;
    std::string reason_;
    bool isReasonTold_ = false;
};

class NoHotKeys final : public HotKeys {
public:
    Subscription installHandler(Handler /*handler*/) override { return {}; }

    Subscription registerHotKey(std::uint32_t /*keyCode*/, std::uint32_t /*modifiers*/, HotKeyId /*id*/,
                                AnswerReceiver answered) override {
        answered({hotKeyInvalidError, {}});
        return {};
    }
};

} // namespace

UnavailablePlatform::UnavailablePlatform(SystemLog& log, std::string reason)
    : pointerEvents_(std::make_unique<NoPointerEvents>()),
      pointerPosition_(std::make_unique<NoPointerPosition>()),
      inputTrust_(std::make_unique<NoInputTrust>(log, std::move(reason))),
      hotKeys_(std::make_unique<NoHotKeys>()) {}

UnavailablePlatform::~UnavailablePlatform() = default;

PointerEvents& UnavailablePlatform::pointerEvents() {
    return *pointerEvents_;
}

PointerPosition& UnavailablePlatform::pointerPosition() {
    return *pointerPosition_;
}

InputTrust& UnavailablePlatform::inputTrust() {
    return *inputTrust_;
}

HotKeys& UnavailablePlatform::hotKeys() {
    return *hotKeys_;
}

} // namespace velloran::platform::unavailable
