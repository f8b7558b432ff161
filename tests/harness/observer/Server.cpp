#include "harness/observer/Server.h"

#include <utility>

namespace velloran::observer {

std::unique_ptr<Server> Server::connect(const std::string& displayName) {
    Connection connection(xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), nullptr));
    if (xcb_connection_has_error(connection.get()) != 0) {
        return nullptr;
    }
    return std::unique_ptr<Server>(new Server(std::move(connection)));
}

Server::Server(Connection connection)
    : connection_(std::move(connection)), root_(xcb_setup_roots_iterator(xcb_get_setup(get())).data->root) {}

bool Server::synchronize() const {
    const Owned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(get(), xcb_get_input_focus(get()), nullptr));
    return reply != nullptr;
}

Place Server::pointer() const {
    const auto reply = queryPointer();
    return reply ? Place{reply->root_x, reply->root_y} : Place{};
}

unsigned Server::buttonsDown() const {
    const auto reply = queryPointer();
    constexpr unsigned firstButton = 8;
    constexpr unsigned fiveButtons = 0x1F;
    return reply ? reply->mask >> firstButton & fiveButtons : 0;
}

unsigned Server::modifiers() const {
    const auto reply = queryPointer();
    constexpr unsigned eightModifiers = 0xFF;
    return reply ? reply->mask & eightModifiers : 0;
}

Owned<xcb_query_pointer_reply_t> Server::queryPointer() const {
    return Owned<xcb_query_pointer_reply_t>(xcb_query_pointer_reply(get(), xcb_query_pointer(get(), root_), nullptr));
}

} // namespace velloran::observer
