#pragma once

#include <QObject>
#include <QWindow>
#include <QtQmlIntegration>

#include <functional>
#include <utility>

namespace velloran {

/// The menu of the window manager for the program's window, as far as there is one.
class WindowManagerMenu : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the desktop.")

public:
    /// `show` opens the menu at the pointer, or returns false where there is none.
    explicit WindowManagerMenu(std::function<bool(QWindow& window)> show) : show_(std::move(show)) {}

    /// Opens the menu at the pointer; false where there is none.
    Q_INVOKABLE bool show(QWindow* window) { return window != nullptr && show_(*window); }

private:
    std::function<bool(QWindow&)> show_;
};

} // namespace velloran
