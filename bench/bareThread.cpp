// A thread that does nothing but click, at absolute deadlines: the exactest rhythm to be had from this machine and X
// server. Usage: bare-thread COUNT SECONDS

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iostream>

namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

template<typename T>
bool read(const char* text, T& number) {
    const char* const end = text + std::strlen(text);
    return std::from_chars(text, end, number).ptr == end;
}

void sleepUntil(const timespec& deadline) {
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr) == EINTR) {
    }
}

void click(xcb_connection_t* connection) {
    xcb_test_fake_input(connection, XCB_BUTTON_PRESS, XCB_BUTTON_INDEX_1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_test_fake_input(connection, XCB_BUTTON_RELEASE, XCB_BUTTON_INDEX_1, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(connection);
}

} // namespace

int main(int argc, char** argv) {
    std::int64_t count = 0;
    double seconds = 0.0;
    if (argc != 3 || !read(argv[1], count) || !read(argv[2], seconds)) {
        std::cerr << "Usage: bare-thread COUNT SECONDS\n";
        return 2;
    }
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    // The answer also says that the extension is there, before anything is timed.
    if (xcb_connection_has_error(connection) != 0 || xcb_get_extension_data(connection, &xcb_test_id)->present == 0) {
        std::cerr << "bare-thread: no X server that takes clicks\n";
        return 3;
    }
    const auto interval = static_cast<std::int64_t>(std::llround(seconds * 1e9));
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    for (std::int64_t i = 0; i < count; ++i) {
        sleepUntil(deadline);
        click(connection);
        const std::int64_t next = deadline.tv_nsec + interval;
        deadline.tv_sec += next / nanosecondsPerSecond;
        deadline.tv_nsec = next % nanosecondsPerSecond;
    }
    // A server may leave unread what a client wrote right before it hung up. An answer says that it has read all.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_disconnect(connection);
    return 0;
}
