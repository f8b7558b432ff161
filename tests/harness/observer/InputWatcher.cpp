#include "harness/observer/InputWatcher.h"

#include <poll.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace velloran::observer {

namespace {

constexpr std::uint64_t windowPatience = 10'000'000'000;
constexpr std::uint64_t nanosecondsPerMillisecond = 1'000'000;
constexpr unsigned sentMark = 0x80;
/// Nobody waits longer than for that many.
constexpr std::size_t largestBatch = 1000;

/// WM_SIZE_HINTS of the ICCCM: the user has chosen place and size, so that a window manager keeps them.
struct SizeHints {
    std::uint32_t flags;
    std::int32_t x;
    std::int32_t y;
    std::int32_t width;
    std::int32_t height;
    std::uint32_t unused[13];
};

InputEvent eventOf(const xcb_button_press_event_t& event, InputEvent::Kind kind, std::uint64_t arrival) {
    return {kind, false, event.detail, event.state, {event.root_x, event.root_y}, event.time, arrival};
}

} // namespace

std::uint64_t monotonicNanoseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(std::chrono::nanoseconds(now).count());
}

std::optional<Area> InputWatcher::openWindow(Area wanted, const std::string& title, bool isManaged) {
    xcb_connection_t* const connection = server_.get();
    window_ = xcb_generate_id(connection);
    constexpr std::uint32_t eventMask = XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                                        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                        XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const std::uint32_t background = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->white_pixel;
    const std::uint32_t values[] = {background, isManaged ? 0U : 1U, eventMask};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window_, server_.root(), static_cast<std::int16_t>(wanted.x),
                      static_cast<std::int16_t>(wanted.y), static_cast<std::uint16_t>(wanted.width),
                      static_cast<std::uint16_t>(wanted.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(title.size()), title.data());
    constexpr std::uint32_t userPlaceAndSize = 3;
    const SizeHints hints{userPlaceAndSize, wanted.x, wanted.y, wanted.width, wanted.height, {}};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS,
                        32, sizeof hints / sizeof(std::uint32_t), &hints);
    xcb_map_window(connection, window_);
    xcb_flush(connection);

    const std::uint64_t deadline = monotonicNanoseconds() + windowPatience;
    while (!isViewable()) {
        // What came along with the answer does not wake up the wait any more.
        if (!drain() && !waitForReadable(deadline)) {
            return std::nullopt;
        }
    }
    drain();
    events_.clear();
    return areaOfWindow(wanted);
}

bool InputWatcher::takeFocus() {
    xcb_set_input_focus(server_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
    const Owned<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(server_.get(), xcb_get_input_focus(server_.get()), nullptr));
    return focus && focus->focus == window_;
}

bool InputWatcher::listenToServer() {
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(server_.get(), &xcb_input_id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    const Owned<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(server_.get(), xcb_input_xi_query_version(server_.get(), 2, 2), nullptr));
    if (!version) {
        return false;
    }

    struct {
        xcb_input_event_mask_t header;
        std::uint32_t mask;
    } const selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                      XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE};

    const auto request = xcb_input_xi_select_events_checked(server_.get(), server_.root(), 1, &selection.header);
    const Owned<xcb_generic_error_t> error(xcb_request_check(server_.get(), request));
    if (error) {
        return false;
    }
    rawExtension_ = extension->major_opcode;
    return true;
}

std::vector<InputEvent> InputWatcher::read() {
    while (drain() && events_.size() < largestBatch) {
    }
    return std::exchange(events_, {});
}

bool InputWatcher::drain() {
    std::vector<Owned<xcb_generic_event_t>> batch;
    const std::uint64_t arrival = monotonicNanoseconds();
    while (batch.size() < largestBatch) {
        Owned<xcb_generic_event_t> event(xcb_poll_for_event(server_.get()));
        if (!event) {
            break;
        }
        batch.push_back(std::move(event));
    }
    // Raw events do not say where the pointer is. Asking once for all of a batch keeps up with any flood of clicks.
    const bool hasRaw =
        std::any_of(batch.begin(), batch.end(), [this](const auto& event) { return isRawButton(*event); });
    const Place pointer = hasRaw ? server_.pointer() : Place{};
    for (const auto& event : batch) {
        take(*event, pointer, arrival);
    }
    return !batch.empty();
}

bool InputWatcher::isRawButton(const xcb_generic_event_t& event) const {
    if ((event.response_type & ~sentMark) != XCB_GE_GENERIC) {
        return false;
    }
    const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    return raw.extension == rawExtension_ &&
           (raw.event_type == XCB_INPUT_RAW_BUTTON_PRESS || raw.event_type == XCB_INPUT_RAW_BUTTON_RELEASE);
}

std::vector<InputEvent> InputWatcher::waitAndRead(std::uint64_t mostNanoseconds) {
    std::vector<InputEvent> events = read();
    const std::uint64_t deadline = monotonicNanoseconds() + mostNanoseconds;
    while (events.empty() && waitForReadable(deadline)) {
        events = read();
    }
    return events;
}

bool InputWatcher::waitForReadable(std::uint64_t deadline) const {
    const std::uint64_t now = monotonicNanoseconds();
    if (now >= deadline || server_.isBroken()) {
        return false;
    }
    pollfd descriptor{server_.fileDescriptor(), POLLIN, 0};
    return poll(&descriptor, 1, static_cast<int>((deadline - now) / nanosecondsPerMillisecond) + 1) > 0;
}

bool InputWatcher::isViewable() const {
    const Owned<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(server_.get(), xcb_get_window_attributes(server_.get(), window_), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

Area InputWatcher::areaOfWindow(Area wanted) const {
    const auto geometryRequest = xcb_get_geometry(server_.get(), window_);
    const auto placeRequest = xcb_translate_coordinates(server_.get(), window_, server_.root(), 0, 0);
    const Owned<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(server_.get(), geometryRequest, nullptr));
    const Owned<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(server_.get(), placeRequest, nullptr));
    if (!geometry || !place) {
        return wanted;
    }
    return {place->dst_x, place->dst_y, geometry->width, geometry->height};
}

void InputWatcher::take(const xcb_generic_event_t& event, Place pointer, std::uint64_t arrival) {
    using Kind = InputEvent::Kind;
    // Four of the kinds have the same layout.
    const auto& input = reinterpret_cast<const xcb_button_press_event_t&>(event);
    switch (event.response_type & ~sentMark) {
    case XCB_BUTTON_PRESS:
        events_.push_back(eventOf(input, Kind::buttonPress, arrival));
        break;
    case XCB_BUTTON_RELEASE:
        events_.push_back(eventOf(input, Kind::buttonRelease, arrival));
        break;
    case XCB_KEY_PRESS:
        events_.push_back(eventOf(input, Kind::keyPress, arrival));
        break;
    case XCB_KEY_RELEASE:
        events_.push_back(eventOf(input, Kind::keyRelease, arrival));
        break;
    case XCB_GE_GENERIC:
        if (isRawButton(event)) {
            const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
            const bool isPress = raw.event_type == XCB_INPUT_RAW_BUTTON_PRESS;
            const Kind kind = isPress ? Kind::buttonPress : Kind::buttonRelease;
            events_.push_back({kind, true, raw.detail, 0, pointer, raw.time, arrival});
        }
        break;
    default:
        break;
    }
}

} // namespace velloran::observer
