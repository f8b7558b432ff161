// A thread that does nothing but click, at absolute deadlines, over a connection for emulated input that KWin or
// GNOME's shell gives it without a question: the exactest rhythm to be had from this machine and desktop. Usage:
// bare-input-thread COUNT SECONDS

#include "Schedule.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>

#include <libei.h>
#include <linux/input-event-codes.h>
#include <linux/sockios.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <chrono>
#include <iostream>

namespace {

using velloran::bench::Schedule;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds longestWait{10};
/// Of the kinds of devices, by KWin's numbers.
constexpr int mouseAlone = 2;

QVariant ask(const QString& service, const QString& path, const QString& interface, const QString& method,
             const QVariantList& arguments = {}) {
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, method);
    question.setArguments(arguments);
    return QDBusConnection::sessionBus().call(question).arguments().value(0);
}

/// The desktop's end of a connection for emulated input; -1 where there is none.
int connectToDesktop() {
    QVariant answer = ask("org.kde.KWin", "/org/kde/KWin/EIS/RemoteDesktop", "org.kde.KWin.EIS.RemoteDesktop",
                          "connectToEIS", {mouseAlone});
    if (!answer.canConvert<QDBusUnixFileDescriptor>()) {
        const QString shell = QStringLiteral("org.gnome.Mutter.RemoteDesktop");
        const QString session =
            ask(shell, "/org/gnome/Mutter/RemoteDesktop", shell, "CreateSession").value<QDBusObjectPath>().path();
        ask(shell, session, shell + ".Session", "Start");
        answer = ask(shell, session, shell + ".Session", "ConnectToEIS", {QVariantMap()});
    }
    const auto descriptor = answer.value<QDBusUnixFileDescriptor>();
    return descriptor.isValid() ? dup(descriptor.fileDescriptor()) : -1;
}

/// The mouse, as soon as the desktop takes clicks from it; nothing when it does not in time.
ei_device* waitForMouse(ei* context) {
    ei_device* mouse = nullptr;
    const auto end = Clock::now() + longestWait;
    while (mouse == nullptr && Clock::now() < end) {
        pollfd ready{ei_get_fd(context), POLLIN, 0};
        poll(&ready, 1, 100);
        ei_dispatch(context);
        while (ei_event* const event = ei_get_event(context)) {
            ei_device* const device = ei_event_get_device(event);
            const auto type = ei_event_get_type(event);
            if (type == EI_EVENT_SEAT_ADDED) {
                ei_seat_bind_capabilities(ei_event_get_seat(event), EI_DEVICE_CAP_POINTER, EI_DEVICE_CAP_BUTTON,
                                          nullptr);
            } else if (type == EI_EVENT_DEVICE_RESUMED && mouse == nullptr &&
                       ei_device_has_capability(device, EI_DEVICE_CAP_BUTTON)) {
                mouse = ei_device_ref(device);
                ei_device_start_emulating(mouse, 1);
            }
            ei_event_unref(event);
        }
    }
    return mouse;
}

void click(ei* context, ei_device* device) {
    for (const bool isDown : {true, false}) {
        ei_device_button_button(device, BTN_LEFT, isDown);
        ei_device_frame(device, ei_now(context));
    }
}

/// A desktop may leave unread what was written right before the end.
void waitUntilRead(int descriptor) {
    const auto end = Clock::now() + longestWait;
    int unread = 1;
    while (Clock::now() < end && ioctl(descriptor, SIOCOUTQ, &unread) == 0 && unread > 0) {
        usleep(1000);
    }
}

} // namespace

int main(int argc, char** argv) {
    const auto schedule = Schedule::read(argc, argv);
    if (!schedule) {
        std::cerr << "Usage: bare-input-thread COUNT SECONDS\n";
        return 2;
    }
    const QCoreApplication application(argc, argv);
    ei* const context = ei_new_sender(nullptr);
    const int descriptor = connectToDesktop();
    if (descriptor < 0 || ei_setup_backend_fd(context, dup(descriptor)) != 0) {
        std::cerr << "bare-input-thread: no desktop that takes emulated input\n";
        return 3;
    }
    ei_device* const device = waitForMouse(context);
    if (device == nullptr) {
        std::cerr << "bare-input-thread: the desktop gives no mouse\n";
        return 3;
    }
    schedule->run([&] { click(context, device); });
    waitUntilRead(descriptor);
    ei_device_unref(device);
    ei_unref(context);
    return 0;
}
