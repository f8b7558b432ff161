// A thread that does nothing but click, at absolute deadlines: the exactest rhythm to be had from this machine and X
// server. Usage: bare-thread COUNT SECONDS

#include "Schedule.h"

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdlib>
#include <iostream>

namespace {

using velloran::bench::Schedule;

void click(xcb_connection_t* connection) {
    xcb_test_fake_input(connection, XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_test_fake_input(connection, XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(connection);
}

} // namespace

int main(int argc, char** argv) {
    const auto schedule = Schedule::read(argc, argv);
    if (!schedule) {
        std::cerr << "Usage: bare-thread COUNT SECONDS\n";
        return 2;
    }
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    // The answer also says that the extension is there, before anything is timed.
    if (xcb_connection_has_error(connection) != 0 || xcb_get_extension_data(connection, &xcb_test_id)->present == 0) {
        std::cerr << "bare-thread: no X server that takes clicks\n";
        return 3;
    }
    schedule->run([connection] { click(connection); });
    // A server may leave unread what a client wrote right before it hung up. An answer says that it has read all.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_disconnect(connection);
    return 0;
}
