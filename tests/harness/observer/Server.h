#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

namespace velloran::observer {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply, event or error of the X library. Null when none came.
template<typename T>
using Owned = std::unique_ptr<T, FreeMemory>;

/// A place on the screen, in pixels.
struct Place {
    int x = 0;
    int y = 0;

    friend bool operator==(const Place&, const Place&) = default;
};

/// A rectangle on the screen, in pixels.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// One program's connection to an X server. One thread.
class Server {
public:
    /// Null when no server answers. An empty name stands for the one that the environment names.
    static std::unique_ptr<Server> connect(const std::string& displayName);

    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }

    [[nodiscard]] xcb_window_t root() const { return root_; }

    [[nodiscard]] int fileDescriptor() const { return xcb_get_file_descriptor(get()); }

    [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(get()) != 0; }

    /// Waits until the server has dealt with everything asked so far. False when it is gone.
    bool synchronize() const;

    /// Where the pointer is.
    [[nodiscard]] Place pointer() const;

    /// Buttons that are down, by role: bit 0 for button 1 and so on up to button 5.
    [[nodiscard]] unsigned buttonsDown() const;

    /// The modifiers in force now, locks included, as in an event's state.
    [[nodiscard]] unsigned modifiers() const;

private:
    struct Close {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };

    using Connection = std::unique_ptr<xcb_connection_t, Close>;

    explicit Server(Connection connection);

    [[nodiscard]] Owned<xcb_query_pointer_reply_t> queryPointer() const;

    Connection connection_;
    xcb_window_t root_ = XCB_NONE;
};

} // namespace velloran::observer
