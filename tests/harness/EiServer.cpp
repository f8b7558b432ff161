#include "harness/EiServer.h"

#include "base/fatal.h"

#include <libeis.h>

namespace velloran::tests {

EiServer::EiServer() : server_(eis_new(nullptr)) {
    if (eis_setup_backend_fd(server_) != 0) {
        fatalError("There is no server for emulated input");
    }
}

EiServer::~EiServer() {
    disconnect();
    eis_unref(server_);
}

int EiServer::makeClient() {
    return eis_backend_fd_add_client(server_);
}

void EiServer::look() {
    eis_dispatch(server_);
    while (eis_event* const event = eis_get_event(server_)) {
        switch (eis_event_get_type(event)) {
        case EIS_EVENT_CLIENT_CONNECT:
            client_ = eis_client_ref(eis_event_get_client(event));
            eis_client_connect(client_);
            seat_ = eis_client_new_seat(client_, "seat");
            eis_seat_configure_capability(seat_, EIS_DEVICE_CAP_POINTER);
            eis_seat_configure_capability(seat_, EIS_DEVICE_CAP_BUTTON);
            eis_seat_configure_capability(seat_, EIS_DEVICE_CAP_KEYBOARD);
            eis_seat_add(seat_);
            break;
        case EIS_EVENT_CLIENT_DISCONNECT:
            isClientGone = true;
            break;
        case EIS_EVENT_SEAT_BIND:
            if (eis_event_seat_has_capability(event, EIS_DEVICE_CAP_KEYBOARD)) {
                log.emplace_back("wants the keyboard");
            }
            if (device_ == nullptr && eis_event_seat_has_capability(event, EIS_DEVICE_CAP_BUTTON)) {
                addDevice();
            }
            break;
        case EIS_EVENT_DEVICE_START_EMULATING:
            isEmulating = true;
            break;
        case EIS_EVENT_DEVICE_STOP_EMULATING:
            isEmulating = false;
            break;
        case EIS_EVENT_BUTTON_BUTTON:
            log.push_back(std::to_string(eis_event_button_get_button(event)) +
                          (eis_event_button_get_is_press(event) ? " down" : " up"));
            break;
        case EIS_EVENT_FRAME:
            log.emplace_back("frame");
            break;
        default:
            break;
        }
        eis_event_unref(event);
    }
}

void EiServer::addDevice() {
    device_ = eis_seat_new_device(seat_);
    eis_device_configure_name(device_, "pointer");
    eis_device_configure_capability(device_, EIS_DEVICE_CAP_POINTER);
    eis_device_configure_capability(device_, EIS_DEVICE_CAP_BUTTON);
    eis_device_add(device_);
    if (resumesAtOnce) {
        resume();
    }
}

void EiServer::pause() {
    eis_device_pause(device_);
}

void EiServer::resume() {
    eis_device_resume(device_);
}

void EiServer::removeDevice() {
    eis_device_remove(device_);
    device_ = eis_device_unref(device_);
}

void EiServer::disconnect() {
    if (device_ != nullptr) {
        device_ = eis_device_unref(device_);
    }
    if (seat_ != nullptr) {
        seat_ = eis_seat_unref(seat_);
    }
    if (client_ != nullptr) {
        eis_client_disconnect(client_);
        client_ = eis_client_unref(client_);
    }
}

} // namespace velloran::tests
