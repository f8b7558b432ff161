#include "platform/x11/X11Keyboard.h"

#include "platform/x11/XkbHeader.h"

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <string>

namespace velloran::platform::x11 {

namespace {

constexpr std::uint32_t evdevOffset = 8;
constexpr std::uint16_t coreKeyboard = XCB_XKB_ID_USE_CORE_KBD;

struct ReleaseContext {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
};

struct ReleaseKeymap {
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
};

bool enableExtension(xcb_connection_t* connection) {
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    const Allocated<xcb_xkb_use_extension_reply_t> answer(xcb_xkb_use_extension_reply(
        connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION), nullptr));
    return answer && answer->supported != 0;
}

} // namespace

X11Keyboard::X11Keyboard(MainConnection& connection) : connection_(connection) {
    xcb_connection_t* const server = connection_.get();
    isPresent_ = enableExtension(server);
    if (isPresent_) {
        eventBase_ = xcb_get_extension_data(server, &xcb_xkb_id)->first_event;
        constexpr std::uint32_t detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
        const Allocated<xcb_xkb_per_client_flags_reply_t> flags(xcb_xkb_per_client_flags_reply(
            server, xcb_xkb_per_client_flags(server, coreKeyboard, detectable, detectable, 0, 0, 0), nullptr));
        constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
        constexpr std::uint16_t allParts = 0xFF;
        xcb_xkb_select_events(server, coreKeyboard, events, 0, events, allParts, allParts, nullptr);
    }
    connection_.settle();
}

std::optional<xcb_keycode_t> X11Keyboard::keyCode(std::uint32_t evdevCode) const {
    if (xcb_connection_has_error(connection_.get()) != 0) {
        return std::nullopt;
    }
    const xcb_setup_t* const setup = xcb_get_setup(connection_.get());
    const std::uint32_t code = evdevCode + evdevOffset;
    if (code < setup->min_keycode || code > setup->max_keycode) {
        return std::nullopt;
    }
    return static_cast<xcb_keycode_t>(code);
}

X11Keyboard::Keys X11Keyboard::keysDown() {
    xcb_connection_t* const server = connection_.get();
    const Allocated<xcb_query_keymap_reply_t> reply(xcb_query_keymap_reply(server, xcb_query_keymap(server), nullptr));
    connection_.settle();
    Keys keys;
    for (std::size_t key = 0; reply && key < keys.size(); ++key) {
        const unsigned eightKeys = reply->keys[key / 8];
        keys[key] = (eightKeys >> (key % 8) & 1U) != 0;
    }
    return keys;
}

bool X11Keyboard::isMappingChange(const xcb_generic_event_t& event) const {
    const unsigned kind = eventKind(event);
    if (kind == XCB_MAPPING_NOTIFY) {
        return reinterpret_cast<const xcb_mapping_notify_event_t&>(event).request != XCB_MAPPING_POINTER;
    }
    // Of this extension's events only those that tell of changes were asked for.
    return isPresent_ && kind == eventBase_;
}

Result<keys::KeyboardLayout> X11Keyboard::layout() {
    if (!isPresent_) {
        return Error{"the X server has no XKB extension"};
    }
    const std::unique_ptr<xkb_context, ReleaseContext> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    std::unique_ptr<xkb_keymap, ReleaseKeymap> keymap;
    if (context) {
        xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
        const std::int32_t device = xkb_x11_get_core_keyboard_device_id(connection_.get());
        if (device >= 0) {
            keymap.reset(
                xkb_x11_keymap_new_from_device(context.get(), connection_.get(), device, XKB_KEYMAP_COMPILE_NO_FLAGS));
        }
    }
    connection_.settle();
    if (!keymap) {
        return Error{"the X server does not tell its keymap"};
    }
    const Allocated<char> text(xkb_keymap_get_as_string(keymap.get(), XKB_KEYMAP_FORMAT_TEXT_V1));
    return keys::KeyboardLayout::fromText(text ? text.get() : "");
}

keys::KeyboardState X11Keyboard::state() {
    if (!isPresent_) {
        return {};
    }
    xcb_connection_t* const server = connection_.get();
    const Allocated<xcb_xkb_get_state_reply_t> state(
        xcb_xkb_get_state_reply(server, xcb_xkb_get_state(server, coreKeyboard), nullptr));
    connection_.settle();
    return state ? keys::KeyboardState{state->group, state->lockedMods} : keys::KeyboardState{};
}

} // namespace velloran::platform::x11
