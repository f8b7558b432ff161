#include "platform/portal/EiSender.h"

#include <libei.h>

#include <algorithm>
#include <utility>

namespace velloran::platform::portal {

EiSender::EiSender(EventLoop& loop, int descriptor, Told told)
    : loop_(loop),
      pipe_(std::in_place, descriptor),
      context_(ei_new_sender(nullptr)),
      told_(std::make_shared<const Told>(std::move(told))) {
    ei_configure_name(context_, "Velloran");
    if (ei_setup_backend_fd(context_, pipe_->takeEnd()) != 0 || !pipe_->send()) {
        context_ = ei_unref(context_);
        loop.post([told = std::weak_ptr(told_)] {
            if (const auto receiver = told.lock()) {
                receiver->lost();
            }
        });
        return;
    }
    watch_ = loop.watch(pipe_->descriptor(), EventLoop::Readiness::readable, [this] { follow(); });
}

EiSender::~EiSender() {
    if (context_ != nullptr) {
        letDeviceGo();
        ei_unref(context_);
    }
}

bool EiSender::isKeeping() const {
    const std::lock_guard lock(mutex_);
    return pipe_ && pipe_->isKeeping();
}

void EiSender::send(const std::vector<MouseEvent>& events) {
    const std::lock_guard lock(mutex_);
    if (!canSend_) {
        return;
    }
    // In one piece: some desktops do not let a button go when its program is killed.
    for (const MouseEvent& event : events) {
        ei_device_button_button(device_, static_cast<std::uint32_t>(evdevButton(event.button)), isPress(event.type));
        ei_device_frame(device_, ei_now(context_));
    }
    if (!pipe_->send()) {
        isBroken_ = true;
        followLater();
    }
}

/// A click that is being sent is out when the lock is free.
void EiSender::end(std::unique_ptr<PortalSession> /*session*/) {
    watch_.reset();
    const std::lock_guard lock(mutex_);
    if (context_ != nullptr) {
        if (canSend_.exchange(false)) {
            ei_device_stop_emulating(device_);
        }
        letDeviceGo();
        context_ = ei_unref(context_);
        // Its farewell.
        static_cast<void>(pipe_->send());
        pipe_.reset();
    }
}

void EiSender::follow() {
    // Whoever is told may let go of this, and so may a click that another thread is done with.
    const auto self = shared_from_this();
    News news = News::none;
    {
        const std::lock_guard lock(mutex_);
        if (context_ == nullptr || isLost_) {
            return;
        }
        isBroken_ = !pipe_->receive() || isBroken_;
        ei_dispatch(context_);
        while (ei_event* const event = ei_get_event(context_)) {
            news = std::max(news, take(*event));
            ei_event_unref(event);
        }
        isBroken_ = !pipe_->send() || isBroken_;
        isLost_ = isBroken_ || news == News::lost;
        if (isLost_) {
            canSend_ = false;
            news = News::lost;
        }
    }
    if (news == News::lost) {
        watch_.reset();
        told_->lost();
    } else if (news == News::changed) {
        told_->changed();
    }
}

void EiSender::followLater() {
    loop_.postFromAnyThread([weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->follow();
        }
    });
}

EiSender::News EiSender::take(ei_event& event) {
    ei_device* const device = ei_event_get_device(&event);
    switch (ei_event_get_type(&event)) {
    case EI_EVENT_SEAT_ADDED:
        ei_seat_bind_capabilities(ei_event_get_seat(&event), EI_DEVICE_CAP_POINTER, EI_DEVICE_CAP_BUTTON, nullptr);
        return News::none;
    case EI_EVENT_DEVICE_ADDED:
        if (device_ == nullptr && ei_device_has_capability(device, EI_DEVICE_CAP_BUTTON)) {
            device_ = ei_device_ref(device);
        }
        return News::none;
    case EI_EVENT_DEVICE_RESUMED:
        if (device == device_ && !canSend_.exchange(true)) {
            ei_device_start_emulating(device_, ++emulations_);
            return News::changed;
        }
        return News::none;
    case EI_EVENT_DEVICE_PAUSED:
        return device == device_ && canSend_.exchange(false) ? News::changed : News::none;
    case EI_EVENT_DEVICE_REMOVED:
        if (device == device_) {
            letDeviceGo();
            return canSend_.exchange(false) ? News::changed : News::none;
        }
        return News::none;
    case EI_EVENT_DISCONNECT:
        return News::lost;
    default:
        return News::none;
    }
}

void EiSender::letDeviceGo() {
    if (device_ != nullptr) {
        device_ = ei_device_unref(device_);
    }
}

} // namespace velloran::platform::portal
