#include "ui/window/PointSizeKeeper.h"

#include <QScreen>

#include <algorithm>
#include <chrono>
#include <utility>

namespace velloran {

namespace {

using namespace std::chrono_literals;

/// Longer than the pauses of a hand that moves a window.
constexpr auto restTime = 250ms;

/// `rect` moved into `area`, as far as that is possible.
QRect movedInto(const QRect& area, QRect rect) {
    rect.moveLeft(std::max(area.left(), std::min(rect.left(), area.right() + 1 - rect.width())));
    rect.moveTop(std::max(area.top(), std::min(rect.top(), area.bottom() + 1 - rect.height())));
    return rect;
}

/// The screen's: newer toolkits tell a window of its own later than of the new screen.
qreal scaleOf(const QWindow& window) {
    const QScreen* const screen = window.screen();
    return screen == nullptr ? window.devicePixelRatio() : screen->devicePixelRatio();
}

} // namespace

PointSizeKeeper::PointSizeKeeper(QObject* parent) : QObject(parent) {
    rest_.setSingleShot(true);
    rest_.setInterval(restTime);
    connect(&rest_, &QTimer::timeout, this, &PointSizeKeeper::restoreSize);
}

void PointSizeKeeper::setWindow(QWindow* window) {
    if (window_ == window) {
        return;
    }
    if (window_) {
        window_->disconnect(this);
    }
    rest_.stop();
    wanted_ = QSize();
    window_ = window;
    if (window != nullptr) {
        scale_ = scaleOf(*window);
        lastSize_ = window->size();
        connect(window, &QWindow::screenChanged, this, &PointSizeKeeper::screenChanged);
        connect(window, &QWindow::widthChanged, this, &PointSizeKeeper::resized);
        connect(window, &QWindow::heightChanged, this, &PointSizeKeeper::resized);
        connect(window, &QWindow::xChanged, this, &PointSizeKeeper::moved);
        connect(window, &QWindow::yChanged, this, &PointSizeKeeper::moved);
    }
    emit windowChanged();
}

void PointSizeKeeper::screenChanged() {
    if (scaleOf(*window_) == scale_) {
        return;
    }
    scale_ = scaleOf(*window_);
    if (!wanted_.isValid()) {
        wanted_ = lastSize_;
    }
    rest_.start();
}

/// The toolkit tells the size on the new screen before the new screen; what it tells then is not the user's wish.
void PointSizeKeeper::resized() {
    if (scaleOf(*window_) == scale_ && !wanted_.isValid()) {
        lastSize_ = window_->size();
    }
}

void PointSizeKeeper::moved() {
    if (rest_.isActive()) {
        rest_.start();
    }
}

void PointSizeKeeper::restoreSize() {
    const QSize wanted = std::exchange(wanted_, QSize());
    constexpr Qt::WindowStates keptBySystem = Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized;
    if (!window_) {
        return;
    }
    lastSize_ = window_->size();
    if ((window_->windowStates() & keptBySystem) != 0 || window_->size() == wanted) {
        return;
    }
    const QRect area = window_->screen()->availableGeometry();
    QRect rect(QPoint(), wanted.boundedTo(area.size()).expandedTo(window_->minimumSize()));
    rect.moveCenter(window_->geometry().center());
    window_->setGeometry(movedInto(area, rect));
}

} // namespace velloran
