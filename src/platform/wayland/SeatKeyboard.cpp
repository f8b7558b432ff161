#include "platform/wayland/SeatKeyboard.h"

#include <sys/mman.h>
#include <unistd.h>

#include <string_view>
#include <utility>

namespace velloran::platform::wayland {

namespace {

/// Nothing that came later is needed.
constexpr std::uint32_t firstSeatVersion = 1;

} // namespace

SeatKeyboard::SeatKeyboard(EventLoop& loop, const std::string& compositor)
    : connection_(WaylandConnection::open(loop, compositor, [this] { disconnect(); })) {
    static constexpr wl_registry_listener listener{
        [](void* data, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
           std::uint32_t /*version*/) {
            if (std::string_view(interface) == wl_seat_interface.name) {
                static_cast<SeatKeyboard*>(data)->add(name);
            }
        },
        [](void* data, wl_registry* /*registry*/, std::uint32_t name) {
            static_cast<SeatKeyboard*>(data)->remove(name);
        },
    };
    if (connection_) {
        connection_->send([this] {
            registry_.reset(wl_display_get_registry(connection_->display()));
            wl_registry_add_listener(registry_.get(), &listener, this);
        });
        ask();
    }
}

SeatKeyboard::~SeatKeyboard() {
    disconnect();
}

void SeatKeyboard::disconnect() {
    answer_.reset();
    keyboard_.reset();
    seat_.reset();
    registry_.reset();
    connection_.reset();
}

void SeatKeyboard::waitForKeymap(std::chrono::milliseconds atMost) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + atMost;
    while (isConnected() && keymapText_.empty() && answersMissing_ > 0 && Clock::now() < end) {
        connection_->waitAndRead(std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()));
    }
}

void SeatKeyboard::ask() {
    static constexpr wl_callback_listener listener{
        [](void* data, wl_callback* /*callback*/, std::uint32_t /*data*/) {
            auto& keyboard = *static_cast<SeatKeyboard*>(data);
            keyboard.answer_.reset();
            if (--keyboard.answersMissing_ > 0) {
                keyboard.ask();
            }
        },
    };
    connection_->send([this] {
        answer_.reset(wl_display_sync(connection_->display()));
        wl_callback_add_listener(answer_.get(), &listener, this);
    });
}

void SeatKeyboard::add(std::uint32_t name) {
    static constexpr wl_seat_listener listener{
        [](void* data, wl_seat* /*seat*/, std::uint32_t capabilities) {
            static_cast<SeatKeyboard*>(data)->setHasKeyboard((capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0);
        },
        [](void* /*data*/, wl_seat* /*seat*/, const char* /*name*/) {},
    };
    if (seat_) {
        return;
    }
    connection_->send([&] {
        seatName_ = name;
        seat_.reset(
            static_cast<wl_seat*>(wl_registry_bind(registry_.get(), name, &wl_seat_interface, firstSeatVersion)));
        wl_seat_add_listener(seat_.get(), &listener, this);
    });
}

void SeatKeyboard::remove(std::uint32_t name) {
    if (seat_ && name == seatName_) {
        setHasKeyboard(false);
        connection_->send([this] { seat_.reset(); });
    }
}

void SeatKeyboard::setHasKeyboard(bool hasKeyboard) {
    static constexpr wl_keyboard_listener listener{
        [](void* data, wl_keyboard* /*keyboard*/, std::uint32_t format, int file, std::uint32_t size) {
            static_cast<SeatKeyboard*>(data)->takeKeymap(format, file, size);
        },
        // Only the window with the focus is told of these.
        [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, wl_surface* /*surface*/,
           wl_array* /*keys*/) {},
        [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, wl_surface* /*surface*/) {},
        [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, std::uint32_t /*time*/,
           std::uint32_t /*key*/, std::uint32_t /*state*/) {},
        [](void* /*data*/, wl_keyboard* /*keyboard*/, std::uint32_t /*serial*/, std::uint32_t /*depressed*/,
           std::uint32_t /*latched*/, std::uint32_t /*locked*/, std::uint32_t /*group*/) {},
        [](void* /*data*/, wl_keyboard* /*keyboard*/, std::int32_t /*rate*/, std::int32_t /*delay*/) {},
    };
    if (!hasKeyboard) {
        connection_->send([this] { keyboard_.reset(); });
        keymapText_.clear();
        layout_.reset();
    } else if (!keyboard_) {
        connection_->send([this] {
            keyboard_.reset(wl_seat_get_keyboard(seat_.get()));
            wl_keyboard_add_listener(keyboard_.get(), &listener, this);
        });
    }
}

void SeatKeyboard::takeKeymap(std::uint32_t format, int file, std::uint32_t size) {
    void* const text = format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 && size > 0
                           ? mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0)
                           : MAP_FAILED;
    close(file);
    layout_.reset();
    keymapText_.clear();
    if (text != MAP_FAILED) {
        // The last byte ends it.
        keymapText_.assign(static_cast<const char*>(text), size - 1);
        munmap(text, size);
    }
    if (changed_) {
        changed_();
    }
}

const keys::KeyboardLayout* SeatKeyboard::layout() {
    if (!layout_ && !keymapText_.empty()) {
        if (auto read = keys::KeyboardLayout::fromText(keymapText_)) {
            layout_ = std::move(read).value();
        }
    }
    return layout_ ? &*layout_ : nullptr;
}

std::optional<std::string> SeatKeyboard::charactersIgnoringModifiers(std::uint32_t evdevCode, bool shiftHeld) {
    const auto* const known = layout();
    std::string characters = known != nullptr ? known->charactersIgnoringModifiers(evdevCode, {}, shiftHeld) : "";
    return characters.empty() ? std::nullopt : std::optional(std::move(characters));
}

} // namespace velloran::platform::wayland
