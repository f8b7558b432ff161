#pragma once

#include "async/Observers.h"
#include "platform/HotKeys.h"
#include "platform/x11/MainConnection.h"
#include "platform/x11/ModifierBits.h"
#include "platform/x11/X11Keyboard.h"

#include <map>
#include <memory>
#include <vector>

namespace velloran::platform::x11 {

/// Hot keys through passive key grabs. A combination is grabbed by physical key, whatever Caps Lock, Num Lock and
/// Scroll Lock say. A combination that this program holds already counts as taken. A change of the keyboard may move a
/// registered one onto what another program holds: then it counts as taken back until the next change.
class X11HotKeys final : public HotKeys {
public:
    X11HotKeys(MainConnection& connection, X11Keyboard& keyboard);
    ~X11HotKeys() override;

    Subscription installHandler(Handler handler) override;
    Subscription registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                AnswerReceiver answered) override;

private:
    struct Registration {
        HotKeyId id;
        AnswerReceiver answered;
        std::uint32_t modifiers = 0;
        xcb_keycode_t key = 0;
        std::vector<std::uint16_t> grabbedStates;
        Status status = noErr;
    };

    [[nodiscard]] Status grabFirst(Registration& registration);
    void unregister(const std::shared_ptr<Registration>& registration);

    void onEvent(const xcb_generic_event_t& event);
    void onKeyPress(const xcb_key_press_event_t& event);
    void followMapping();
    [[nodiscard]] Status grabAgain(Registration& registration);
    void holdUntilReleased(xcb_keycode_t key);
    void checkHeldKeys();

    MainConnection& connection_;
    X11Keyboard& keyboard_;
    ModifierBits bits_;
    Observers<const HotKeyEvent*> handlers_;
    /// Held by nobody else for longer than a call.
    std::vector<std::shared_ptr<Registration>> registrations_;
    /// Keys whose press counted already, each with the number of that press.
    std::map<xcb_keycode_t, std::uint64_t> heldKeys_;
    std::uint64_t lastPress_ = 0;
    bool isFollowingRequested_ = false;
    ScheduledCall following_;
    ScheduledCall checking_;
    ScheduledCall releasing_;
};

} // namespace velloran::platform::x11
