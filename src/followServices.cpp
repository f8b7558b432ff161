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
    Following(const Backends& backends, Published<Desktop>& desktop)
        : desktop_(desktop),
          plasma_(backends.plasma, [this] { merge(); }),
          portal_(backends.portal, [this] { merge(); }),
          needsClicks_(!desktop.get().clicks.part),
          needsHotKeys_(!desktop.get().hotKeys.part),
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
    void merge() {
        // One that is begun here tells at once what it has.
        if (std::exchange(isMerging_, true)) {
            return;
        }
        const auto hotKeys = needsHotKeys_ ? first(&Desktop::hotKeys, {&plasma_, &portal_}) : std::nullopt;
        const auto pointer = needsPointer_ ? first(&Desktop::pointer, {&plasma_}) : std::nullopt;
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
            assign(now.hotKeys, hotKeys);
            assign(now.pointer, pointer);
        });
    }

    Published<Desktop>& desktop_;
    bool isMerging_ = false;
    Service plasma_;
    Service portal_;
    bool needsClicks_;
    bool needsHotKeys_;
    bool needsPointer_;
    Subscription lacksPointer_;
};

} // namespace

Subscription followServices(const Environment& environment, const Backends& backends, Published<Desktop>& desktop) {
    if (!isWayland(environment)) {
        return {};
    }
    auto following = std::make_shared<Following>(backends, desktop);
    return Subscription([following]() mutable { following.reset(); });
}

} // namespace velloran
