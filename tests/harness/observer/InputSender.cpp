#include "harness/observer/InputSender.h"

#include <xcb/xtest.h>
// The X library's header has a field called like a keyword of C++.
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit

#include <algorithm>
#include <array>

namespace velloran::observer {

namespace {

constexpr std::uint16_t coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

/// The server ignores requests of the extension from a program that has not greeted it.
void greetXkb(xcb_connection_t* connection) {
    const Owned<xcb_xkb_use_extension_reply_t> greeting(xcb_xkb_use_extension_reply(
        connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
}

} // namespace

void InputSender::fake(std::uint8_t kind, std::uint8_t detail, Place place) const {
    xcb_test_fake_input(server_.get(), kind, detail, XCB_CURRENT_TIME, server_.root(),
                        static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y), 0);
    server_.synchronize();
}

void InputSender::key(std::uint8_t key, bool isPress) const {
    fake(isPress ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key);
}

void InputSender::tap(std::uint8_t key, const std::vector<std::uint8_t>& held) const {
    pressAll(held);
    this->key(key, true);
    this->key(key, false);
    releaseAll(held);
}

void InputSender::pressAll(const std::vector<std::uint8_t>& keys) const {
    std::for_each(keys.begin(), keys.end(), [this](std::uint8_t one) { key(one, true); });
}

void InputSender::releaseAll(const std::vector<std::uint8_t>& keys) const {
    std::for_each(keys.rbegin(), keys.rend(), [this](std::uint8_t one) { key(one, false); });
}

void InputSender::button(std::uint8_t button, bool isPress) const {
    fake(isPress ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, button);
}

void InputSender::movePointer(Place place) const {
    fake(XCB_MOTION_NOTIFY, 0, place);
}

void InputSender::lockModifiers(unsigned modifiers, bool isOn) const {
    greetXkb(server_.get());
    const auto affected = static_cast<std::uint8_t>(modifiers);
    xcb_xkb_latch_lock_state(server_.get(), coreKeyboard, affected, isOn ? affected : std::uint8_t{0}, 0, 0, 0, 0, 0);
    server_.synchronize();
}

void InputSender::lockGroup(unsigned group) const {
    greetXkb(server_.get());
    xcb_xkb_latch_lock_state(server_.get(), coreKeyboard, 0, 0, 1, static_cast<std::uint8_t>(group), 0, 0, 0);
    server_.synchronize();
}

void InputSender::setRepeat(std::uint16_t delay, std::uint16_t interval) const {
    greetXkb(server_.get());
    const std::array<std::uint8_t, 32> perKey{};
    constexpr std::uint32_t repeatKeys = XCB_XKB_BOOL_CTRL_REPEAT_KEYS;
    xcb_xkb_set_controls(server_.get(), coreKeyboard, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, repeatKeys, repeatKeys,
                         repeatKeys, delay, interval, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, perKey.data());
    server_.synchronize();
}

bool InputSender::setButtonMapping(const std::vector<std::uint8_t>& roles) const {
    const Owned<xcb_get_pointer_mapping_reply_t> present(
        xcb_get_pointer_mapping_reply(server_.get(), xcb_get_pointer_mapping(server_.get()), nullptr));
    if (!present) {
        return false;
    }
    // The server takes complete mappings only.
    const std::uint8_t* const first = xcb_get_pointer_mapping_map(present.get());
    std::vector<std::uint8_t> complete(first, first + xcb_get_pointer_mapping_map_length(present.get()));
    std::copy_n(roles.begin(), std::min(roles.size(), complete.size()), complete.begin());
    const Owned<xcb_set_pointer_mapping_reply_t> answer(xcb_set_pointer_mapping_reply(
        server_.get(),
        xcb_set_pointer_mapping(server_.get(), static_cast<std::uint8_t>(complete.size()), complete.data()), nullptr));
    return answer && answer->status == XCB_MAPPING_STATUS_SUCCESS;
}

bool InputSender::grabKey(std::uint8_t key, unsigned modifiers) const {
    const auto request = xcb_grab_key_checked(server_.get(), 0, server_.root(), static_cast<std::uint16_t>(modifiers),
                                              key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Owned<xcb_generic_error_t> error(xcb_request_check(server_.get(), request));
    return error == nullptr && !server_.isBroken();
}

void InputSender::ungrabKey(std::uint8_t key, unsigned modifiers) const {
    xcb_ungrab_key(server_.get(), key, server_.root(), static_cast<std::uint16_t>(modifiers));
    server_.synchronize();
}

} // namespace velloran::observer
