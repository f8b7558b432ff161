#pragma once

#include "platform/wayland/FakeCompositor.h"

#include <cstdint>
#include <list>
#include <string>
#include <vector>

namespace velloran::tests {

/// The hot keys of a compositor, by either protocol, as a test wants them. Ends before the compositor.
class FakeHotKeys {
public:
    enum class Protocol { xx, vicinae };

    /// One that a client asks for.
    struct HotKey {
        wl_resource* resource = nullptr;
        Protocol protocol = Protocol::xx;
        std::uint32_t symbol = 0;
        std::uint32_t modifiers = 0;
        std::string description;
        /// Which program it says it is.
        std::string application;
        /// Whether it was asked to be bound.
        bool isCommitted = false;
    };

    explicit FakeHotKeys(FakeCompositor& compositor) : compositor_(compositor) {}

    FakeHotKeys(const FakeHotKeys&) = delete;
    FakeHotKeys& operator=(const FakeHotKeys&) = delete;
    ~FakeHotKeys() = default;

    void offer(Protocol protocol);
    void withdraw(Protocol protocol);

    /// What becomes of the one that was asked for last.
    void bind();
    void deny(std::uint32_t reason);
    /// The reason is told by the older protocol only.
    void revoke(std::uint32_t reason = 0);
    void press();
    void release();

    /// Those that were not given back, in the order in which they were asked for.
    std::list<HotKey> hotKeys;

private:
    static void bindXx(wl_client* client, void* self, std::uint32_t version, std::uint32_t id);
    static void bindVicinae(wl_client* client, void* self, std::uint32_t version, std::uint32_t id);
    static HotKey& hotKeyOf(wl_resource* resource);
    HotKey& make(wl_client* client, std::uint32_t id, Protocol protocol);

    FakeCompositor& compositor_;
    wl_global* xx_ = nullptr;
    wl_global* vicinae_ = nullptr;
    std::string application_;
};

} // namespace velloran::tests
