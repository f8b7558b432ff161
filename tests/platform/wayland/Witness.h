#pragma once

#include "harness/ChildProcess.h"
#include "harness/observer/InputWatcher.h"
#include "platform/wayland/Sway.h"

#include <cstddef>
#include <string>
#include <vector>

namespace velloran::tests {

/// Another client of a compositor: a window that fills the screen and writes down what its mouse buttons do, and a
/// mouse that is on it; and a keyboard, whose focus it has.
class Witness {
public:
    /// Opens the window and waits until the mouse is on it.
    explicit Witness(const Sway& sway);

    [[nodiscard]] bool isReady() const { return isReady_; }

    /// How often a button was released since the beginning, as far as the window has been told.
    std::size_t releases();

    /// What the buttons did since the last report, in order. Everything that the compositor did before is in it.
    std::vector<observer::InputEvent> report();

    /// Presses a key, by evdev's code and the bits of a customary keymap, or lets it go. Everything that comes of it
    /// has been sent out when this returns.
    void press(unsigned code, unsigned modifiers) { ask("press " + keyWords(code, modifiers)); }

    void release(unsigned code, unsigned modifiers) { ask("release " + keyWords(code, modifiers)); }

    void tap(unsigned code, unsigned modifiers) {
        press(code, modifiers);
        release(code, modifiers);
    }

    /// Gives the keyboard a layout, by its customary name.
    void load(const std::string& layout) { ask("layout " + layout); }

    /// How many presses of keys the window has seen.
    std::size_t keyPresses() { return ask("keys"); }

private:
    static std::string keyWords(unsigned code, unsigned modifiers) {
        return std::to_string(code) + ' ' + std::to_string(modifiers);
    }

    std::size_t ask(const std::string& question);

    ChildProcess process_;
    bool isReady_ = false;
};

} // namespace velloran::tests
