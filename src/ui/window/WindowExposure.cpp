#include "ui/window/WindowExposure.h"

#include <QEvent>
#include <QQuickWindow>

namespace velloran {

WindowExposure::WindowExposure(QQuickItem* parent) : QQuickItem(parent) {}

bool WindowExposure::eventFilter(QObject* watched, QEvent* event) {
    const bool passed = QQuickItem::eventFilter(watched, event);
    if (event->type() == QEvent::Expose || event->type() == QEvent::WindowStateChange) {
        refresh();
    }
    return passed;
}

void WindowExposure::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange) {
        follow(data.window);
    }
    QQuickItem::itemChange(change, data);
}

void WindowExposure::follow(QWindow* window) {
    if (window_) {
        window_->removeEventFilter(this);
    }
    window_ = window;
    if (window_) {
        window_->installEventFilter(this);
    }
    refresh();
}

void WindowExposure::refresh() {
    const bool exposed = window_ && window_->isExposed() && !window_->windowStates().testFlag(Qt::WindowMinimized);
    if (exposed != exposed_) {
        exposed_ = exposed;
        emit exposedChanged();
    }
}

} // namespace velloran
