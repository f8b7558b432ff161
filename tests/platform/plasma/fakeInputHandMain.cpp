// The user's keyboard and mouse on a KWin that has no door for emulated input, by the protocol that it has for tests:
// does what the lines on its standard input say, and answers each when it is done. KWin offers the protocol to programs
// whose desktop entry asks for it.

#include <fake-input-client-protocol.h>
#include <wayland-client.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>

namespace {

const wl_registry_listener registryListener{
    [](void* data, wl_registry* registry, std::uint32_t name, const char* type, std::uint32_t) {
        constexpr std::uint32_t firstWithKeys = 4;
        if (std::strcmp(type, org_kde_kwin_fake_input_interface.name) == 0) {
            *static_cast<org_kde_kwin_fake_input**>(data) = static_cast<org_kde_kwin_fake_input*>(
                wl_registry_bind(registry, name, &org_kde_kwin_fake_input_interface, firstWithKeys));
        }
    },
    [](void*, wl_registry*, std::uint32_t) {},
};

/// "press CODE", "release CODE", "down BUTTON", "up BUTTON", by evdev's codes, or "move RIGHT DOWN".
bool obey(org_kde_kwin_fake_input* input, const std::string& line) {
    std::istringstream words(line);
    std::string what;
    words >> what;
    if (what == "move") {
        double right = 0;
        double down = 0;
        words >> right >> down;
        org_kde_kwin_fake_input_pointer_motion(input, wl_fixed_from_double(right), wl_fixed_from_double(down));
        return !words.fail();
    }
    std::uint32_t code = 0;
    words >> code;
    if (what == "press" || what == "release") {
        org_kde_kwin_fake_input_keyboard_key(input, code, what == "press" ? 1 : 0);
    } else if (what == "down" || what == "up") {
        org_kde_kwin_fake_input_button(input, code, what == "down" ? 1 : 0);
    } else {
        return false;
    }
    return !words.fail();
}

} // namespace

int main() {
    wl_display* const display = wl_display_connect(nullptr);
    org_kde_kwin_fake_input* input = nullptr;
    if (display != nullptr) {
        wl_registry_add_listener(wl_display_get_registry(display), &registryListener, static_cast<void*>(&input));
        wl_display_roundtrip(display);
    }
    if (input == nullptr) {
        std::cerr << "KWin takes no input\n";
        return EXIT_FAILURE;
    }
    org_kde_kwin_fake_input_authenticate(input, "Velloran's tests", "they play the user");
    wl_display_roundtrip(display);
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        if (!obey(input, line) || wl_display_roundtrip(display) < 0) {
            std::cerr << "what is " << line << "?\n";
            return EXIT_FAILURE;
        }
        std::cout << "done" << std::endl;
    }
    return EXIT_SUCCESS;
}
