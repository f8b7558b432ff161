#include "platform/wayland/CompositorHotKeys.h"

#include "keys/KeyCodes.h"
#include "platform/HeldKey.h"
#include "platform/HotKeyClaim.h"

#include <algorithm>
#include <utility>

namespace velloran::platform::wayland {

namespace {

/// How long a compositor that has gone is left alone.
constexpr std::uint64_t reconnectInterval = nanosecondsPerSecond;
/// A compositor that takes longer is not waited for any more, and heard all the same.
constexpr std::uint64_t longestWaitForGlobals = 30 * nanosecondsPerSecond;
/// So many connections may end before it is left alone.
constexpr int mostLosses = 3;

} // namespace

class CompositorHotKeys::Registration final : public HotKeyReceiver, public std::enable_shared_from_this<Registration> {
public:
    Registration(CompositorHotKeys& hotKeys, std::uint32_t code, std::uint32_t withModifiers, HotKeyId identifier,
                 AnswerReceiver receiver)
        : keyCode(code),
          modifiers(withModifiers),
          claim(identifier, std::move(receiver)),
          hotKeys_(hotKeys),
          key_(hotKeys.loop_) {}

    void bound() override { claim.answer({noErr, {}}); }

    void denied(Status status) override {
        const auto self = shared_from_this();
        hotKeys_.release(*this);
        // One that was granted once may be had again in another layout.
        if (!claim.isAnswered()) {
            hotKeys_.end(self);
        }
        claim.answer({status, {}});
    }

    void revoked(Status status) override {
        const auto self = shared_from_this();
        isRevoked = true;
        hotKeys_.release(*this);
        claim.answer({status, {}});
    }

    void pressed() override {
        if (key_.press()) {
            const HotKeyEvent event = claim.press();
            hotKeys_.handlers_.notify(&event);
        }
    }

    void released() override { key_.release(); }

    /// Nothing more is told of the key for now.
    void forget() { key_.forget(); }

    const std::uint32_t keyCode;
    const std::uint32_t modifiers;
    HotKeyClaim claim;
    /// What was asked for last.
    HotKeyProtocol::Combination asked;
    std::unique_ptr<HotKeyObject> object;
    bool isRevoked = false;

private:
    CompositorHotKeys& hotKeys_;
    HeldKey key_;
};

CompositorHotKeys::CompositorHotKeys(EventLoop& loop, std::string compositor, keys::CurrentLayout layout)
    : loop_(loop),
      compositor_(std::move(compositor)),
      layout_(std::move(layout)),
      parts_(Desktop{}),
      patience_(loop, loop.callAfter(longestWaitForGlobals, [this] {
          isPatient_ = false;
          tell();
      })) {
    connect();
}

CompositorHotKeys::~CompositorHotKeys() {
    disconnect();
}

void CompositorHotKeys::waitForOffer(std::chrono::milliseconds atMost) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + atMost;
    while (connection_ && !connection_->isLost() && !isDecided_ && Clock::now() < end) {
        connection_->waitAndRead(std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()));
    }
}

void CompositorHotKeys::connect() {
    static constexpr wl_registry_listener listener{
        [](void* data, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
           std::uint32_t /*version*/) { static_cast<CompositorHotKeys*>(data)->add(name, interface); },
        [](void* data, wl_registry* /*registry*/, std::uint32_t name) {
            static_cast<CompositorHotKeys*>(data)->remove(name);
        },
    };
    connection_ = WaylandConnection::open(loop_, compositor_, [this] { lose(); });
    if (!connection_) {
        retry_ = ScheduledCall(loop_, loop_.callAfter(reconnectInterval, [this] { connect(); }));
        return;
    }
    connection_->send([this] {
        registry_.reset(wl_display_get_registry(connection_->display()));
        wl_registry_add_listener(registry_.get(), &listener, this);
    });
    ask();
    tell();
}

void CompositorHotKeys::ask() {
    static constexpr wl_callback_listener listener{
        [](void* data, wl_callback* /*callback*/, std::uint32_t /*data*/) {
            auto& hotKeys = *static_cast<CompositorHotKeys*>(data);
            hotKeys.answer_.reset();
            hotKeys.isDecided_ = true;
            hotKeys.bindBest();
        },
    };
    connection_->send([this] {
        answer_.reset(wl_display_sync(connection_->display()));
        wl_callback_add_listener(answer_.get(), &listener, this);
    });
}

void CompositorHotKeys::disconnect() {
    for (const RegistrationRef& registration : registrations_) {
        registration->object.reset();
        registration->forget();
    }
    protocol_.reset();
    xx_ = 0;
    vicinae_ = 0;
    used_ = 0;
    isDecided_ = false;
    answer_.reset();
    registry_.reset();
    connection_.reset();
}

void CompositorHotKeys::lose() {
    disconnect();
    if (++losses_ < mostLosses) {
        retry_ = ScheduledCall(loop_, loop_.callAfter(reconnectInterval, [this] { connect(); }));
    }
    tell();
    const auto left = registrations_;
    for (const RegistrationRef& registration : left) {
        registration->claim.lose();
    }
}

void CompositorHotKeys::add(std::uint32_t name, std::string_view interface) {
    if (interface == xx_hotkey_manager_v1_interface.name) {
        xx_ = name;
    } else if (interface == vicinae_hotkey_manager_v1_interface.name) {
        vicinae_ = name;
    } else {
        return;
    }
    bindBest();
}

void CompositorHotKeys::remove(std::uint32_t name) {
    xx_ = xx_ == name ? 0 : xx_;
    vicinae_ = vicinae_ == name ? 0 : vicinae_;
    if (name != used_) {
        return;
    }
    used_ = 0;
    for (const RegistrationRef& registration : registrations_) {
        release(*registration);
    }
    connection_->send([this] { protocol_.reset(); });
    const auto left = registrations_;
    for (const RegistrationRef& registration : left) {
        registration->claim.lose();
    }
    bindBest();
}

/// Of two that are there from the beginning the newer one; what works already stays.
void CompositorHotKeys::bindBest() {
    const GlobalName best = xx_ != 0 ? xx_ : vicinae_;
    if (isDecided_ && !protocol_ && best != 0) {
        used_ = best;
        connection_->send([&] {
            protocol_ = best == xx_ ? bindXxHotKeys(registry_.get(), best) : bindVicinaeHotKeys(registry_.get(), best);
        });
        const auto waiting = registrations_;
        for (const RegistrationRef& registration : waiting) {
            bind(*registration);
        }
    }
    tell();
}

void CompositorHotKeys::tell() {
    Desktop parts;
    if (protocol_) {
        // Not owned: this is no more shared than the connection.
        parts.hotKeys = {std::shared_ptr<HotKeys>(std::shared_ptr<void>(), this),
                         "The hotkey is bound by the compositor, which lets programs ask for some.",
                         {}};
    } else if (connection_ && !isDecided_ && isPatient_) {
        parts.hotKeys = {nullptr, "The compositor has not said yet whether it binds keys for programs.",
                         "The global hotkey does not work here.", true};
    }
    if (parts_.get() != parts) {
        parts_.set(std::move(parts));
    }
}

void CompositorHotKeys::followLayout() {
    const auto all = registrations_;
    for (const RegistrationRef& registration : all) {
        if (symbolOf(registration->keyCode) != registration->asked.symbol) {
            bind(*registration);
        }
    }
}

Subscription CompositorHotKeys::installHandler(Handler handler) {
    return handlers_.attach(std::move(handler));
}

Subscription CompositorHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyId id,
                                               AnswerReceiver answered) {
    const bool isOwn = std::any_of(registrations_.begin(), registrations_.end(), [&](const auto& other) {
        return other->keyCode == keyCode && other->modifiers == modifiers;
    });
    if (isOwn || !protocol_ || symbolOf(keyCode) == 0) {
        answered({isOwn ? hotKeyExistsError : hotKeyInvalidError, {}});
        return {};
    }
    const auto registration = std::make_shared<Registration>(*this, keyCode, modifiers, id, std::move(answered));
    registrations_.push_back(registration);
    bind(*registration);
    return registeredUntil(registration, [this](const RegistrationRef& ending) { end(ending); });
}

/// What the key gives by itself; 0 where that is nothing.
std::uint32_t CompositorHotKeys::symbolOf(std::uint32_t keyCode) const {
    const auto evdevCode = keys::evdevFromVirtualKey(keyCode);
    if (!evdevCode) {
        return 0;
    }
    return keys::fromLayout(layout_, [&](const keys::KeyboardLayout& layout) {
        const auto symbols = layout.symbolsOfPress(*evdevCode, 0);
        return symbols.empty() ? 0 : symbols.front().symbol;
    });
}

void CompositorHotKeys::bind(Registration& registration) {
    release(registration);
    registration.asked = {symbolOf(registration.keyCode), registration.modifiers};
    if (!protocol_ || registration.isRevoked) {
        return;
    }
    if (registration.asked.symbol == 0) {
        registration.denied(hotKeyInvalidError);
        return;
    }
    connection_->send([&] { registration.object = protocol_->ask(registration.asked, registration); });
}

/// Whatever the compositor still says to it is not heard any more.
void CompositorHotKeys::release(Registration& registration) {
    registration.forget();
    if (registration.object) {
        connection_->send([&] { registration.object.reset(); });
    }
}

void CompositorHotKeys::end(const RegistrationRef& registration) {
    if (std::erase(registrations_, registration) > 0) {
        release(*registration);
    }
}

} // namespace velloran::platform::wayland
