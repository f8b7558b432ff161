#pragma once

#include "async/EventLoop.h"

#include <wayland-server.h>

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace velloran::tests {

/// A compositor without a screen, which offers what a test wants and writes down what is done with it. Runs on the
/// test's loop, and can be held still.
class FakeCompositor {
public:
    /// What a client has done with its pointer.
    struct Deed {
        enum class Kind { button, frame };

        Kind kind = Kind::frame;
        std::uint32_t button = 0;
        bool isPressed = false;
        /// Which seat the pointer belongs to.
        std::string seat;

        friend bool operator==(const Deed&, const Deed&) = default;
    };

    /// Listens at `path`, which must not exist.
    FakeCompositor(EventLoop& loop, std::string path);
    FakeCompositor(const FakeCompositor&) = delete;
    FakeCompositor& operator=(const FakeCompositor&) = delete;
    /// Ends as a crash would: the clients find out by themselves.
    ~FakeCompositor();

    /// Makes pointers for programs from now on, or no more.
    void offerPointers();
    void withdrawPointers();

    void addSeat(const std::string& name, bool hasPointer);
    void removeSeat(const std::string& name);

    /// Throws all clients out.
    void endClients();

    /// Does nothing, not even read, until it is to go on.
    void pause() { watch_.reset(); }

    void goOn();

    /// Works on the thread that calls, until it is told to end. Only while it is held still.
    void workUntil(const std::atomic<bool>& isEnding);

    /// For what else a test wants it to offer.
    [[nodiscard]] wl_display* display() const { return display_; }

    /// Has what was told reach the clients.
    void flush() { wl_display_flush_clients(display_); }

    /// How many bytes of the only client wait to be read.
    [[nodiscard]] std::size_t bytesWaiting() const;

    std::vector<Deed> deeds;
    /// How many clients were thrown out because of what they asked for.
    int errors = 0;
    /// How many pointers of clients there are.
    int pointers = 0;

private:
    struct Seat {
        std::string name;
        bool hasPointer;
        wl_global* global;
    };

    struct Pointer {
        FakeCompositor& compositor;
        std::string seat;
    };

    static void bindSeat(wl_client* client, void* seat, std::uint32_t version, std::uint32_t id);
    static void bindManager(wl_client* client, void* compositor, std::uint32_t version, std::uint32_t id);
    static void makePointer(wl_client* client, wl_resource* manager, wl_resource* seat, std::uint32_t id);

    void work();

    EventLoop& loop_;
    const std::string path_;
    wl_display* const display_;
    wl_protocol_logger* const logger_;
    wl_global* manager_ = nullptr;
    std::list<Seat> seats_;
    std::unique_ptr<EventLoop::Watch> watch_;
};

} // namespace velloran::tests
