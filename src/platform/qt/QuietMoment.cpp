#include "platform/qt/QuietMoment.h"

#include <QCoreApplication>
#include <QEvent>

#include <chrono>
#include <thread>

namespace velloran::platform::qt {

namespace {

/// What a picture of the flight takes, with the X server's part in it.
constexpr std::chrono::microseconds longestPicture(1200);
/// How long a click is on its way until its receiver has it.
constexpr std::chrono::microseconds longestClick(700);

} // namespace

QuietMoment::QuietMoment() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool QuietMoment::eventFilter(QObject* receiver, QEvent* event) {
    // Pictures begin with one or the other. What the user does is never held back.
    if (moment_ != Moment::min() && (event->type() == QEvent::Timer || event->type() == QEvent::UpdateRequest)) {
        const Moment now = std::chrono::steady_clock::now();
        if (now > moment_ - longestPicture) {
            if (now < moment_ + longestClick) {
                std::this_thread::sleep_until(moment_ + longestClick);
            }
            moment_ = Moment::min();
        }
    }
    return QObject::eventFilter(receiver, event);
}

} // namespace velloran::platform::qt
