#include "platform/plasma/KWinHand.h"

#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>

#include <libei.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>

namespace velloran::tests {

namespace {

constexpr int keyboardAndMouse = 3;

} // namespace

KWinHand::KWinHand(const QDBusConnection& bus) : ei_(ei_new_sender(nullptr)) {
    QDBusMessage question = QDBusMessage::createMethodCall("org.kde.KWin", "/org/kde/KWin/EIS/RemoteDesktop",
                                                           "org.kde.KWin.EIS.RemoteDesktop", "connectToEIS");
    question.setArguments({keyboardAndMouse});
    const auto descriptor = bus.call(question).arguments().value(0).value<QDBusUnixFileDescriptor>();
    if (!descriptor.isValid() || ei_setup_backend_fd(ei_, dup(descriptor.fileDescriptor())) != 0) {
        return;
    }
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(10);
    while (!isReady() && Clock::now() < end) {
        pollfd ready{ei_get_fd(ei_), POLLIN, 0};
        poll(&ready, 1, 100);
        take();
    }
}

KWinHand::~KWinHand() {
    for (ei_device* const device : {keyboard_, mouse_}) {
        if (device != nullptr) {
            ei_device_unref(device);
        }
    }
    ei_unref(ei_);
}

void KWinHand::take() {
    ei_dispatch(ei_);
    while (ei_event* const event = ei_get_event(ei_)) {
        const auto type = ei_event_get_type(event);
        if (type == EI_EVENT_SEAT_ADDED) {
            ei_seat_bind_capabilities(ei_event_get_seat(event), EI_DEVICE_CAP_POINTER, EI_DEVICE_CAP_BUTTON,
                                      EI_DEVICE_CAP_KEYBOARD, nullptr);
        } else if (type == EI_EVENT_DEVICE_RESUMED) {
            ei_device* const device = ei_event_get_device(event);
            ei_device_start_emulating(device, 1);
            if (keyboard_ == nullptr && ei_device_has_capability(device, EI_DEVICE_CAP_KEYBOARD)) {
                keyboard_ = ei_device_ref(device);
            }
            if (mouse_ == nullptr && ei_device_has_capability(device, EI_DEVICE_CAP_POINTER)) {
                mouse_ = ei_device_ref(device);
            }
        }
        ei_event_unref(event);
    }
}

void KWinHand::key(std::uint32_t code, bool isDown) {
    ei_device_keyboard_key(keyboard_, code, isDown);
    ei_device_frame(keyboard_, ei_now(ei_));
    take();
}

void KWinHand::press(std::initializer_list<std::uint32_t> keys) {
    for (const std::uint32_t code : keys) {
        key(code, true);
    }
}

void KWinHand::release(std::initializer_list<std::uint32_t> keys) {
    for (const std::uint32_t code : keys) {
        key(code, false);
    }
}

void KWinHand::move(double x, double y) {
    ei_device_pointer_motion(mouse_, x, y);
    ei_device_frame(mouse_, ei_now(ei_));
    take();
}

void KWinHand::button(std::uint32_t code, bool isDown) {
    ei_device_button_button(mouse_, code, isDown);
    ei_device_frame(mouse_, ei_now(ei_));
    take();
}

} // namespace velloran::tests
