#include "followServices.h"

#include <initializer_list>
#include <memory>
#include <optional>
#include <utility>

namespace velloran {

using platform::Desktop;
using platform::DesktopPart;

namespace {

using Parts = std::shared_ptr<const Published<Desktop>>;

/// One service: its parts come when it is first asked for them.
class Service {
public:
    Service(std::function<Parts()> make, std::function<void()> changed)
        : make_(std::move(make)), changed_(std::move(changed)) {}

    /// What it has now; null where there is none of it.
    const Desktop* parts() {
        if (make_) {
            parts_ = std::exchange(make_, nullptr)();
            if (parts_) {
                telling_ = parts_->stream().subscribe([this](const Desktop&) { changed_(); });
            }
        }
        return parts_ ? &parts_->get() : nullptr;
    }

private:
    std::function<Parts()> make_;
    std::function<void()> changed_;
    Parts parts_;
    Subscription telling_;
};

/// The part of the first that has it, or may have it yet; else what the last one says to that, if any does.
template<typename Interface>
std::optional<DesktopPart<Interface>> first(DesktopPart<Interface> Desktop::*part,
                                            std::initializer_list<Service*> services) {
    std::optional<DesktopPart<Interface>> found;
    for (Service* const service : services) {
        const Desktop* const parts = service->parts();
        if (parts == nullptr || (parts->*part == DesktopPart<Interface>())) {
            continue;
        }
        found = parts->*part;
        if (found->part || found->isAwaited) {
            break;
        }
    }
    return found;
}

template<typename Interface>
void assign(DesktopPart<Interface>& part, std::optional<DesktopPart<Interface>> found) {
    if (found) {
        part = std::move(*found);
    }
}

class Following {
public:
    Following(const Environment& environment, const Backends& backends, Published<Desktop>& desktop)
        : desktop_(desktop),
          compositor_(ofCompositor(environment, backends), [this] { merge(); }),
          hyprland_(ofHyprland(environment, backends), [this] { merge(); }),
          plasma_(backends.plasma, [this] { merge(); }),
          portal_(backends.portal, [this] { merge(); }),
          gnome_(backends.gnome, [this] { merge(); }),
          needsClicks_(!desktop.get().clicks.part),
          chosenHotKeys_(desktop.get().hotKeys),
          needsPointer_(!desktop.get().pointer.part) {
        merge();
        if (!needsClicks_) {
            lacksPointer_ = backends.lacksPointer->stream().subscribe([this](const bool& lacks) {
                if (lacks && !std::exchange(needsClicks_, true)) {
                    merge();
                }
            });
        }
    }

private:
    static std::function<Parts()> ofCompositor(const Environment& environment, const Backends& backends) {
        const auto compositor = setValue(environment, "WAYLAND_DISPLAY");
        if (!compositor || !backends.compositorHotKeys) {
            return nullptr;
        }
        return [make = backends.compositorHotKeys, name = *compositor] { return make(name); };
    }

    static std::function<Parts()> ofHyprland(const Environment& environment, const Backends& backends) {
        const auto compositor = setValue(environment, "WAYLAND_DISPLAY");
        const auto folder = setValue(environment, "XDG_RUNTIME_DIR");
        const auto instance = setValue(environment, "HYPRLAND_INSTANCE_SIGNATURE");
        if (!compositor || !folder || !instance || !backends.hyprland) {
            return nullptr;
        }
        return [make = backends.hyprland, name = *compositor, place = *folder + "/hypr/" + *instance] {
            return make(name, place);
        };
    }

    /// What was chosen at the start is given up for nothing but the compositor's own.
    DesktopPart<platform::HotKeys> hotKeys() {
        auto found = first(&Desktop::hotKeys, {&compositor_});
        if (!found && !chosenHotKeys_.part) {
            found = first(&Desktop::hotKeys, {&plasma_, &portal_});
        }
        hadOthers_ = hadOthers_ || chosenHotKeys_.part || (found && found->part);
        if (!hadOthers_ && !(found && found->isAwaited)) {
            const auto amongTheUsers = first(&Desktop::hotKeys, {&gnome_});
            found = amongTheUsers ? amongTheUsers : found;
        }
        return found ? *found : chosenHotKeys_;
    }

    void merge() {
        // One that is begun here tells at once what it has.
        if (std::exchange(isMerging_, true)) {
            return;
        }
        const auto found = hotKeys();
        const auto pointer = needsPointer_ ? first(&Desktop::pointer, {&hyprland_, &plasma_}) : std::nullopt;
        const Desktop* const ofPortal = needsClicks_ ? portal_.parts() : nullptr;
        isMerging_ = false;
        desktop_.modify([&](Desktop& now) {
            if (ofPortal != nullptr) {
                now.clicks = ofPortal->clicks;
                now.trust = ofPortal->trust;
            } else if (needsClicks_ && now.clicks.part) {
                now.clicks = noPointerOfCompositor();
                now.trust = nobodyAsked();
            }
            now.hotKeys = found;
            assign(now.pointer, pointer);
        });
    }

    Published<Desktop>& desktop_;
    bool isMerging_ = false;
    Service compositor_;
    Service hyprland_;
    Service plasma_;
    Service portal_;
    Service gnome_;
    bool needsClicks_;
    const DesktopPart<platform::HotKeys> chosenHotKeys_;
    bool needsPointer_;
    /// Whether anybody who comes before GNOME's settings has had hot keys.
    bool hadOthers_ = false;
    Subscription lacksPointer_;
};

} // namespace

Subscription followServices(const Environment& environment, const Backends& backends, Published<Desktop>& desktop) {
    if (!isWayland(environment)) {
        return {};
    }
    auto following = std::make_shared<Following>(environment, backends, desktop);
    return Subscription([following]() mutable { following.reset(); });
}

} // namespace velloran
