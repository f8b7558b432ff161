// A client that shares no code with what it observes: a window that fills the screen, with a mouse on it and a
// keyboard. Answers questions on its standard input; see Witness.h.

#include <virtual-keyboard-unstable-v1-client-protocol.h>
#include <wayland-client.h>
#include <wlr-virtual-pointer-unstable-v1-client-protocol.h>
#include <xdg-activation-v1-client-protocol.h>
#include <xdg-shell-client-protocol.h>
#include <xkbcommon/xkbcommon.h>

#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <sstream>
#include <string_view>
#include <vector>

namespace {

constexpr std::uint32_t capsLock = 2;

struct ButtonEvent {
    bool isPressed;
    std::uint32_t code;
    std::uint32_t time;
    std::int64_t arrival;
};

class Client {
public:
    Client() : display_(wl_display_connect(nullptr)) {
        if (display_ == nullptr) {
            std::cerr << "no compositor\n";
            std::exit(1);
        }
        registry_ = wl_display_get_registry(display_);
        wl_registry_add_listener(registry_, &registryListener, this);
        wl_display_roundtrip(display_);
        if (compositor_ == nullptr || memory_ == nullptr || seat_ == nullptr || shell_ == nullptr) {
            std::cerr << "something is missing\n";
            std::exit(1);
        }
    }

    void openWindow() {
        surface_ = wl_compositor_create_surface(compositor_);
        shellSurface_ = xdg_wm_base_get_xdg_surface(shell_, surface_);
        xdg_surface_add_listener(shellSurface_, &shellSurfaceListener, this);
        window_ = xdg_surface_get_toplevel(shellSurface_);
        xdg_toplevel_add_listener(window_, &windowListener, this);
        xdg_toplevel_set_title(window_, "witness");
        xdg_toplevel_set_maximized(window_);
        wl_surface_commit(surface_);
        dispatchUntil([this] { return isShown_; });
    }

    /// Where the compositor gives programs neither mouse nor keyboard, somebody else brings them.
    void putMouseOnWindow() {
        if (mice_ != nullptr) {
            mouse_ = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(mice_, seat_);
            // The seat has a pointer only now, and tells so.
            dispatchUntil([this] { return pointer_ != nullptr; });
            zwlr_virtual_pointer_v1_motion_absolute(mouse_, 0, 1, 1, 3, 3);
            zwlr_virtual_pointer_v1_frame(mouse_);
        }
        dispatchUntil([this] { return isEntered_; });
    }

    void plugInKeyboard() {
        if (keyboards_ != nullptr) {
            typing_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(keyboards_, seat_);
            load("");
        }
        dispatchUntil([this] { return isFocused_; });
    }

    /// Gives the keyboard a layout, by its customary name.
    void load(const std::string& layout) {
        xkb_context* const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
        const xkb_rule_names names{nullptr, nullptr, layout.c_str(), nullptr, nullptr};
        xkb_keymap* const keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
        char* const text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
        const std::string_view bytes(text, std::strlen(text) + 1);
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
            std::exit(1);
        }
        zwp_virtual_keyboard_v1_keymap(typing_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                       static_cast<std::uint32_t>(bytes.size()));
        close(file);
        std::free(text);
        xkb_keymap_unref(keymap);
        xkb_context_unref(context);
    }

    /// "press CODE MODIFIERS" or "release CODE MODIFIERS", by evdev's code and the keymap's modifier bits.
    void type(std::istream& words, bool isPress) {
        std::uint32_t code = 0;
        std::uint32_t modifiers = 0;
        words >> code >> modifiers;
        // Caps Lock is on without being held.
        const std::uint32_t locked = modifiers & capsLock;
        zwp_virtual_keyboard_v1_modifiers(typing_, modifiers - locked, 0, locked, 0);
        zwp_virtual_keyboard_v1_key(typing_, 0, code,
                                    isPress ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
        zwp_virtual_keyboard_v1_modifiers(typing_, isPress ? modifiers - locked : 0, 0, locked, 0);
    }

    /// "move X Y WIDTH HEIGHT": to that place of a desktop of that size.
    void moveMouse(std::istream& words) {
        std::uint32_t x = 0;
        std::uint32_t y = 0;
        std::uint32_t width = 1;
        std::uint32_t height = 1;
        words >> x >> y >> width >> height;
        zwlr_virtual_pointer_v1_motion_absolute(mouse_, 0, x, y, width, height);
        zwlr_virtual_pointer_v1_frame(mouse_);
    }

    /// "down CODE" or "up CODE", by evdev's code of a button of the mouse.
    void click(std::istream& words, bool isPress) {
        std::uint32_t code = 0;
        words >> code;
        zwlr_virtual_pointer_v1_button(mouse_, 0, code,
                                       isPress ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
        zwlr_virtual_pointer_v1_frame(mouse_);
    }

    /// What lets another window come to the front, for the last press of a key: "token" and the word.
    void tellToken() {
        token_.clear();
        xdg_activation_token_v1* const request = xdg_activation_v1_get_activation_token(activation_);
        xdg_activation_token_v1_add_listener(request, &tokenListener, this);
        xdg_activation_token_v1_set_serial(request, keySerial_, seat_);
        xdg_activation_token_v1_set_surface(request, surface_);
        xdg_activation_token_v1_commit(request);
        dispatchUntil([this] { return !token_.empty(); });
        xdg_activation_token_v1_destroy(request);
        std::cout << "token " << token_ << std::endl;
    }

    void answer(const std::string& line) {
        std::istringstream words(line);
        std::string question;
        words >> question;
        if (question == "press" || question == "release") {
            type(words, question == "press");
        } else if (question == "move") {
            moveMouse(words);
        } else if (question == "down" || question == "up") {
            click(words, question == "down");
        } else if (question == "layout") {
            std::string layout;
            words >> layout;
            load(layout);
        }
        // The second answer comes after everything that was on its way to the compositor when the first was asked for.
        wl_display_roundtrip(display_);
        wl_display_roundtrip(display_);
        if (question == "token") {
            tellToken();
        } else if (question == "releases") {
            std::cout << releases_ << std::endl;
        } else if (question == "focus") {
            std::cout << (isFocused_ ? 1 : 0) << std::endl;
        } else if (question == "pointer") {
            std::cout << (hasPointer_ ? 1 : 0) << std::endl;
        } else if (question == "abilities") {
            std::cout << abilities_ << std::endl;
        } else if (question == "report") {
            std::cout << events_.size() << '\n';
            for (const ButtonEvent& event : events_) {
                std::cout << (event.isPressed ? "down " : "up ") << event.code << ' ' << event.time << ' '
                          << event.arrival << '\n';
            }
            std::cout << std::flush;
            events_.clear();
        } else {
            std::cout << keyPresses_ << std::endl;
        }
    }

    /// Until the standard input or the compositor ends.
    void serve() {
        std::string unread;
        while (true) {
            while (wl_display_prepare_read(display_) != 0) {
                wl_display_dispatch_pending(display_);
            }
            wl_display_flush(display_);
            std::array<pollfd, 2> sources{{{wl_display_get_fd(display_), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
            poll(sources.data(), sources.size(), -1);
            if (sources[0].revents != 0) {
                if (wl_display_read_events(display_) < 0) {
                    return;
                }
            } else {
                wl_display_cancel_read(display_);
            }
            wl_display_dispatch_pending(display_);
            if (sources[1].revents != 0) {
                std::array<char, 256> bytes{};
                const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
                if (count <= 0) {
                    return;
                }
                unread.append(bytes.data(), static_cast<std::size_t>(count));
            }
            for (auto end = unread.find('\n'); end != std::string::npos; end = unread.find('\n')) {
                answer(unread.substr(0, end));
                unread.erase(0, end + 1);
            }
        }
    }

private:
    static Client& self(void* data) { return *static_cast<Client*>(data); }

    template<typename Condition>
    void dispatchUntil(Condition condition) {
        while (!condition() && wl_display_dispatch(display_) >= 0) {
        }
    }

    template<typename Object>
    void bind(Object*& object, std::uint32_t name, const wl_interface& type, std::uint32_t version) {
        object = static_cast<Object*>(wl_registry_bind(registry_, name, &type, version));
    }

    void addGlobal(std::uint32_t name, std::string_view type, std::uint32_t version) {
        if (type == wl_compositor_interface.name) {
            bind(compositor_, name, wl_compositor_interface, 4);
        } else if (type == wl_shm_interface.name) {
            bind(memory_, name, wl_shm_interface, 1);
        } else if (type == wl_seat_interface.name && seat_ == nullptr) {
            bind(seat_, name, wl_seat_interface, 1);
            wl_seat_add_listener(seat_, &seatListener, this);
        } else if (type == xdg_wm_base_interface.name) {
            bind(shell_, name, xdg_wm_base_interface,
                 std::min<std::uint32_t>(version, XDG_TOPLEVEL_WM_CAPABILITIES_SINCE_VERSION));
            xdg_wm_base_add_listener(shell_, &shellListener, this);
        } else if (type == xdg_activation_v1_interface.name) {
            bind(activation_, name, xdg_activation_v1_interface, 1);
        } else if (type == zwlr_virtual_pointer_manager_v1_interface.name) {
            bind(mice_, name, zwlr_virtual_pointer_manager_v1_interface, 1);
        } else if (type == zwp_virtual_keyboard_manager_v1_interface.name) {
            bind(keyboards_, name, zwp_virtual_keyboard_manager_v1_interface, 1);
        }
    }

    void draw() {
        constexpr int bytesInPixel = 4;
        const int size = width_ * height_ * bytesInPixel;
        const int file = memfd_create("window", MFD_CLOEXEC);
        if (ftruncate(file, size) != 0) {
            std::exit(1);
        }
        wl_shm_pool* const pool = wl_shm_create_pool(memory_, file, size);
        wl_buffer* const buffer =
            wl_shm_pool_create_buffer(pool, 0, width_, height_, width_ * bytesInPixel, WL_SHM_FORMAT_XRGB8888);
        wl_shm_pool_destroy(pool);
        close(file);
        wl_surface_attach(surface_, buffer, 0, 0);
        wl_surface_damage(surface_, 0, 0, width_, height_);
        wl_surface_commit(surface_);
        isShown_ = true;
    }

    void takeButton(std::uint32_t time, std::uint32_t code, bool isPressed) {
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        events_.push_back({isPressed, code, time, std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()});
        releases_ += isPressed ? 0 : 1;
    }

    static const wl_registry_listener registryListener;
    static const xdg_wm_base_listener shellListener;
    static const xdg_surface_listener shellSurfaceListener;
    static const xdg_toplevel_listener windowListener;
    static const wl_seat_listener seatListener;
    static const wl_pointer_listener pointerListener;
    static const wl_keyboard_listener keyboardListener;
    static const xdg_activation_token_v1_listener tokenListener;

    wl_display* display_;
    wl_registry* registry_ = nullptr;
    wl_compositor* compositor_ = nullptr;
    wl_shm* memory_ = nullptr;
    wl_seat* seat_ = nullptr;
    xdg_wm_base* shell_ = nullptr;
    xdg_activation_v1* activation_ = nullptr;
    zwlr_virtual_pointer_manager_v1* mice_ = nullptr;
    zwp_virtual_keyboard_manager_v1* keyboards_ = nullptr;
    wl_surface* surface_ = nullptr;
    xdg_surface* shellSurface_ = nullptr;
    xdg_toplevel* window_ = nullptr;
    zwlr_virtual_pointer_v1* mouse_ = nullptr;
    wl_pointer* pointer_ = nullptr;
    zwp_virtual_keyboard_v1* typing_ = nullptr;
    wl_keyboard* keyboard_ = nullptr;
    int width_ = 640;
    int height_ = 480;
    bool isShown_ = false;
    /// Whether the mouse has been on it, and whether it is now.
    bool isEntered_ = false;
    bool hasPointer_ = false;
    bool isFocused_ = false;
    std::size_t keyPresses_ = 0;
    std::uint32_t keySerial_ = 0;
    std::string token_;
    std::uint32_t abilities_ = 0;
    std::size_t releases_ = 0;
    std::vector<ButtonEvent> events_;
};

const wl_registry_listener Client::registryListener{
    [](void* data, wl_registry*, std::uint32_t name, const char* type, std::uint32_t version) {
        self(data).addGlobal(name, type, version);
    },
    [](void*, wl_registry*, std::uint32_t) {},
};

const xdg_wm_base_listener Client::shellListener{
    [](void*, xdg_wm_base* shell, std::uint32_t serial) { xdg_wm_base_pong(shell, serial); },
};

const xdg_surface_listener Client::shellSurfaceListener{
    [](void* data, xdg_surface* surface, std::uint32_t serial) {
        xdg_surface_ack_configure(surface, serial);
        self(data).draw();
    },
};

// Later versions of the library know more events, which the versions in use here never send.
const xdg_toplevel_listener Client::windowListener = [] {
    xdg_toplevel_listener listener{};
    listener.configure = [](void* data, xdg_toplevel*, std::int32_t width, std::int32_t height, wl_array*) {
        self(data).width_ = width > 0 ? width : self(data).width_;
        self(data).height_ = height > 0 ? height : self(data).height_;
    };
    listener.close = [](void*, xdg_toplevel*) { std::exit(0); };
    listener.configure_bounds = [](void*, xdg_toplevel*, std::int32_t, std::int32_t) {};
    listener.wm_capabilities = [](void* data, xdg_toplevel*, wl_array* all) {
        const auto* const begin = static_cast<const std::uint32_t*>(all->data);
        for (const auto* one = begin; one != begin + all->size / sizeof *begin; ++one) {
            self(data).abilities_ |= 1U << *one;
        }
    };
    return listener;
}();

const wl_pointer_listener Client::pointerListener = [] {
    wl_pointer_listener listener{};
    listener.enter = [](void* data, wl_pointer*, std::uint32_t, wl_surface*, wl_fixed_t, wl_fixed_t) {
        self(data).isEntered_ = true;
        self(data).hasPointer_ = true;
    };
    listener.leave = [](void* data, wl_pointer*, std::uint32_t, wl_surface*) { self(data).hasPointer_ = false; };
    listener.motion = [](void*, wl_pointer*, std::uint32_t, wl_fixed_t, wl_fixed_t) {};
    listener.button = [](void* data, wl_pointer*, std::uint32_t, std::uint32_t time, std::uint32_t code,
                         std::uint32_t state) {
        self(data).takeButton(time, code, state == WL_POINTER_BUTTON_STATE_PRESSED);
    };
    listener.axis = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {};
    return listener;
}();

const wl_keyboard_listener Client::keyboardListener{
    [](void*, wl_keyboard*, std::uint32_t, int keymap, std::uint32_t) { close(keymap); },
    [](void* data, wl_keyboard*, std::uint32_t, wl_surface*, wl_array*) { self(data).isFocused_ = true; },
    [](void* data, wl_keyboard*, std::uint32_t, wl_surface*) { self(data).isFocused_ = false; },
    [](void* data, wl_keyboard*, std::uint32_t serial, std::uint32_t, std::uint32_t, std::uint32_t state) {
        self(data).keySerial_ = serial;
        self(data).keyPresses_ += state == WL_KEYBOARD_KEY_STATE_PRESSED ? 1 : 0;
    },
    [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
    {},
};

const xdg_activation_token_v1_listener Client::tokenListener{
    [](void* data, xdg_activation_token_v1*, const char* token) { self(data).token_ = token; },
};

const wl_seat_listener Client::seatListener{
    [](void* data, wl_seat* seat, std::uint32_t capabilities) {
        if ((capabilities & WL_SEAT_CAPABILITY_POINTER) != 0 && self(data).pointer_ == nullptr) {
            self(data).pointer_ = wl_seat_get_pointer(seat);
            wl_pointer_add_listener(self(data).pointer_, &pointerListener, data);
        }
        if ((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0 && self(data).keyboard_ == nullptr) {
            self(data).keyboard_ = wl_seat_get_keyboard(seat);
            wl_keyboard_add_listener(self(data).keyboard_, &keyboardListener, data);
        }
    },
    {},
};

} // namespace

int main() {
    Client client;
    client.openWindow();
    client.putMouseOnWindow();
    client.plugInKeyboard();
    std::cout << "ready" << std::endl;
    client.serve();
}
