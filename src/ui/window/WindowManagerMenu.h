#pragma once

#include <QObject>
#include <QPointF>
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
    /// Opens the menu at `place` in the window, where the pointer is; false where there is none. `missing` is called
    /// later where that is found out only then.
    using Show = std::function<bool(QWindow& window, QPoint place, std::function<void()> missing)>;

    explicit WindowManagerMenu(
        Show show, std::function<void()> prepare = [] {})
        : show_(std::move(show)), prepare_(std::move(prepare)) {}

    /// The button that opens the menu has just gone down.
    Q_INVOKABLE void prepare() { prepare_(); }

    /// Opens the menu at `place` in the window, where the pointer is; false where there is none.
    Q_INVOKABLE bool show(QWindow* window, QPointF place) {
        return window != nullptr && show_(*window, place.toPoint(), [this, place] { emit missing(place); });
    }

signals:
    /// No menu has come for `show` at that place, although one might have.
    void missing(QPointF place);

private:
    Show show_;
    std::function<void()> prepare_;
};

} // namespace velloran
