#include "ui/window/WorkArea.h"

#include <QGuiApplication>

namespace velloran {

WorkArea::WorkArea(QObject* parent) : QObject(parent) {
    follow(QGuiApplication::primaryScreen());
}

void WorkArea::setWindow(QWindow* window) {
    if (window_ == window) {
        return;
    }
    if (window_) {
        window_->disconnect(this);
    }
    window_ = window;
    if (window != nullptr) {
        connect(window, &QWindow::screenChanged, this, &WorkArea::follow);
    }
    follow(window != nullptr ? window->screen() : QGuiApplication::primaryScreen());
    emit windowChanged();
}

QSize WorkArea::size() const {
    return screen_ ? screen_->availableGeometry().size() : QSize();
}

void WorkArea::follow(QScreen* screen) {
    if (screen_ == screen) {
        return;
    }
    if (screen_) {
        screen_->disconnect(this);
    }
    screen_ = screen;
    if (screen != nullptr) {
        connect(screen, &QScreen::availableGeometryChanged, this, &WorkArea::sizeChanged);
    }
    emit sizeChanged();
}

} // namespace velloran
