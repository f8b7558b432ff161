#include "realBackends.h"

#include <QCoreApplication>

#include "async/Observers.h"
#include "platform/gnome/GnomeDesktop.h"
#include "platform/hyprland/HyprlandPointer.h"
#include "platform/hyprland/instance.h"
#include "platform/plasma/PlasmaDesktop.h"
#include "platform/portal/PortalDesktop.h"
#include "platform/qt/monitors.h"
#include "platform/sway/SwayHotKeys.h"
#include "platform/wayland/CompositorHotKeys.h"
#include "platform/wayland/compositorProgram.h"
#include "platform/wayland/SeatKeyboard.h"
#include "platform/wayland/VirtualPointer.h"
#include "platform/x11/X11Server.h"
#include "whileUnlocked.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

namespace velloran {

using platform::Desktop;

namespace {

/// How long a compositor may take to say what it offers, before there is a window: all questions together. One that
/// takes longer is followed.
class Patience {
public:
    /// Has something wait for what is left, and takes off what it used.
    template<typename Wait>
    auto during(Wait&& wait) {
        const Spent spent(left_);
        return wait(left_);
    }

private:
    using Clock = std::chrono::steady_clock;

    class Spent {
    public:
        explicit Spent(std::chrono::milliseconds& left) : left_(left) {}

        Spent(const Spent&) = delete;
        Spent& operator=(const Spent&) = delete;

        ~Spent() {
            const auto used = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin_);
            left_ -= std::min(left_, used);
        }

    private:
        std::chrono::milliseconds& left_;
        const Clock::time_point begin_ = Clock::now();
    };

    std::chrono::milliseconds left_{500};
};

/// An X server as a desktop: it has every part.
Result<Desktop> connectX11(EventLoop& loop, const std::function<void()>& onServerLost) {
    const auto connected = platform::x11::X11Server::connect(loop, onServerLost);
    if (!connected) {
        return connected.error();
    }
    const auto& server = connected.value();
    const auto toPoints = [](platform::Point pixels) {
        return platform::qt::pointsFromPixels(pixels, platform::qt::currentMonitors());
    };
    const auto clicks = server->pointerEvents();
    if (!clicks) {
        return Error{"The X server takes no further connection"};
    }
    Desktop desktop;
    desktop.clicks = {clicks, "Input is posted through the X server: the session runs on one.", {}};
    desktop.trust = {server->inputTrust(clicks), "An X server asks nobody for a permission.", {}};
    desktop.pointer = {server->pointerPosition(toPoints), "The X server tells where the pointer is.", {}};
    desktop.hotKeys = {server->hotKeys(), "The X server lets a program grab keys.", {}};
    desktop.keyCharacters = {server->keyCharacters(), "The X server tells its keyboard layout.", {}};
    return desktop;
}

/// A compositor that gives every program a pointer: clicks, and nobody to ask for them.
Result<Desktop> connectVirtualPointer(EventLoop& loop, const std::string& compositor, const std::string& sessionBus,
                                      const std::shared_ptr<Published<bool>>& lacksPointer, Patience& patience) {
    using platform::wayland::VirtualPointer;
    const auto pointer = std::make_shared<VirtualPointer>(loop, compositor);
    patience.during([&](auto atMost) { pointer->waitForOffer(atMost); });
    switch (pointer->offer()) {
    case VirtualPointer::Offer::missing:
        return Error{noPointer};
    case VirtualPointer::Offer::unknown:
        pointer->onMissing([lacksPointer] { lacksPointer->set(true); });
        break;
    case VirtualPointer::Offer::offered:
        break;
    }
    Desktop desktop;
    desktop.clicks = {std::shared_ptr<platform::PointerEvents>(pointer, &pointer->pointerEvents()),
                      "Input is posted through a pointer of the program's own: the compositor gives one to each.",
                      {}};
    desktop.trust = {whileUnlocked(pointer, sessionBus), "The compositor asks nobody for a permission.", {}};
    return desktop;
}

/// The keyboard of a compositor, made when it is first asked for.
class KeyboardOnce {
public:
    explicit KeyboardOnce(std::shared_ptr<Patience> patience) : patience_(std::move(patience)) {}

    std::shared_ptr<platform::wayland::SeatKeyboard> of(EventLoop& loop, const std::string& compositor) {
        if (!keyboard_) {
            keyboard_ = std::make_shared<platform::wayland::SeatKeyboard>(loop, compositor);
            patience_->during([this](auto atMost) { keyboard_->waitForKeymap(atMost); });
            keyboard_->onChanged([changed = changed_] { changed->notify(); });
        }
        return keyboard_;
    }

    /// Calls it as well whenever the layout of the one that was made has changed.
    void onChanged(std::function<void()> changed) { telling_.push_back(changed_->attach(std::move(changed))); }

    /// The layout of the one that was made; null where none was, or it has none.
    const keys::KeyboardLayout* layout() { return keyboard_ ? keyboard_->layout() : nullptr; }

private:
    const std::shared_ptr<Patience> patience_;
    std::shared_ptr<platform::wayland::SeatKeyboard> keyboard_;
    std::shared_ptr<Observers<>> changed_ = std::make_shared<Observers<>>();
    std::vector<Subscription> telling_;
};

/// A compositor that takes bindings from every program.
Result<Desktop> connectSway(EventLoop& loop, const std::string& socket,
                            const std::shared_ptr<platform::wayland::SeatKeyboard>& keyboard) {
    const auto hotKeys =
        std::make_shared<platform::sway::SwayHotKeys>(loop, socket, [keyboard] { return keyboard->layout(); });
    if (!hotKeys->isFound()) {
        return Error{"the compositor takes no commands."};
    }
    Desktop desktop;
    desktop.hotKeys = {hotKeys, "The hotkey is a binding of sway's, which lets programs add some.", {}};
    return desktop;
}

/// A compositor by what all of them do.
Result<Desktop> connectCompositor(const std::shared_ptr<platform::wayland::SeatKeyboard>& keyboard) {
    if (!keyboard->isConnected()) {
        return Error{"no compositor answers."};
    }
    Desktop desktop;
    desktop.keyCharacters = {keyboard, "The compositor tells its keyboard's layout.", {}};
    return desktop;
}

std::shared_ptr<const Published<Desktop>> connectCompositorHotKeys(EventLoop& loop, const std::string& compositor,
                                                                   const std::shared_ptr<KeyboardOnce>& keyboard,
                                                                   Patience& patience) {
    using platform::wayland::CompositorHotKeys;
    const auto hotKeys =
        std::make_shared<CompositorHotKeys>(loop, compositor, [keyboard] { return keyboard->layout(); });
    patience.during([&](auto atMost) { hotKeys->waitForOffer(atMost); });
    keyboard->onChanged([weak = std::weak_ptr<CompositorHotKeys>(hotKeys)] {
        if (const auto following = weak.lock()) {
            following->followLayout();
        }
    });
    return {hotKeys, &hotKeys->parts()};
}

std::shared_ptr<const Published<Desktop>> connectHyprland(EventLoop& loop, const std::string& compositor,
                                                          const std::string& folder, Patience& patience) {
    using platform::hyprland::HyprlandPointer;
    const auto socket = platform::hyprland::requestSocket(folder, compositor);
    const auto pointer = socket ? std::make_shared<HyprlandPointer>(loop, *socket) : nullptr;
    if (!pointer || !patience.during([&](auto atMost) { return pointer->waitForAnswer(atMost); })) {
        return nullptr;
    }
    return {pointer, &pointer->parts()};
}

/// The session bus as parts of the desktop connect to it, each for itself.
platform::bus::BusPlace busAt(const std::string& address) {
    return {QByteArray::fromStdString(address), platform::bus::BusState::answers};
}

std::shared_ptr<const Published<Desktop>> connectPlasma(EventLoop& loop, const std::string& sessionBus,
                                                        const std::shared_ptr<KeyboardOnce>& keyboard) {
    using platform::plasma::PlasmaDesktop;
    if (sessionBus.empty()) {
        return nullptr;
    }
    const auto plasma =
        std::make_shared<PlasmaDesktop>(loop, busAt(sessionBus), [keyboard] { return keyboard->layout(); });
    keyboard->onChanged([weak = std::weak_ptr<PlasmaDesktop>(plasma)] {
        if (const auto following = weak.lock()) {
            following->followLayout();
        }
    });
    return {plasma, &plasma->parts()};
}

std::shared_ptr<const Published<Desktop>> connectPortal(EventLoop& loop, const std::string& sessionBus,
                                                        const std::shared_ptr<KeyboardOnce>& keyboard) {
    if (sessionBus.empty()) {
        return nullptr;
    }
    const auto portal = std::make_shared<platform::portal::PortalDesktop>(
        loop, busAt(sessionBus), QStringLiteral("app.velloran.Velloran"), QCoreApplication::applicationFilePath(),
        [keyboard] { return keyboard->layout(); });
    return {portal, &portal->parts()};
}

std::shared_ptr<const Published<Desktop>> connectGnome(EventLoop& loop, const std::string& sessionBus,
                                                       platform::HotkeyConsent* consent,
                                                       const std::function<bool()>& isActive,
                                                       const std::shared_ptr<KeyboardOnce>& keyboard) {
    if (sessionBus.empty() || consent == nullptr || !isActive) {
        return nullptr;
    }
    const auto gnome = std::make_shared<platform::gnome::GnomeDesktop>(
        loop, busAt(sessionBus), *consent, [keyboard] { return keyboard->layout(); }, isActive);
    return {gnome, &gnome->parts()};
}

} // namespace

Backends realBackends(EventLoop& loop, std::function<void()> onServerLost, const std::string& sessionBus,
                      platform::HotkeyConsent* consent, std::function<bool()> isActive) {
    const auto patience = std::make_shared<Patience>();
    const auto keyboard = std::make_shared<KeyboardOnce>(patience);
    const auto lacksPointer = std::make_shared<Published<bool>>(false);
    return {.x11 = [&loop, onServerLost = std::move(onServerLost)] { return connectX11(loop, onServerLost); },
            .virtualPointer =
                [&loop, sessionBus, lacksPointer, patience](const std::string& compositor) {
                    return connectVirtualPointer(loop, compositor, sessionBus, lacksPointer, *patience);
                },
            .sway =
                [&loop, keyboard](const std::string& compositor, const std::string& socket) {
                    return connectSway(loop, socket, keyboard->of(loop, compositor));
                },
            .compositorProgram = platform::wayland::compositorProgram,
            .compositor =
                [&loop, keyboard](const std::string& compositor) {
                    return connectCompositor(keyboard->of(loop, compositor));
                },
            .compositorHotKeys =
                [&loop, keyboard, patience](const std::string& compositor) {
                    return connectCompositorHotKeys(loop, compositor, keyboard, *patience);
                },
            .hyprland =
                [&loop, patience](const std::string& compositor, const std::string& folder) {
                    return connectHyprland(loop, compositor, folder, *patience);
                },
            .plasma = [&loop, sessionBus, keyboard] { return connectPlasma(loop, sessionBus, keyboard); },
            .portal = [&loop, sessionBus, keyboard] { return connectPortal(loop, sessionBus, keyboard); },
            .gnome = [&loop, sessionBus, consent, isActive = std::move(isActive),
                      keyboard] { return connectGnome(loop, sessionBus, consent, isActive, keyboard); },
            .lacksPointer = lacksPointer};
}

} // namespace velloran
