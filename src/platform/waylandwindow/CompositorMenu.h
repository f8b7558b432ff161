#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QTimer>
#include <QWindow>

#include <cstdint>
#include <functional>

namespace velloran::platform::waylandwindow {

/// The compositor's own menu for the program's window. What compositors say of having one is not to be relied on, so it
/// is tried, and each time anew: a menu that opens takes the pointer or the keyboard from the window, but so may
/// something else, and a busy compositor may be late. Main thread; needs the toolkit's application object.
class CompositorMenu final : public QObject {
public:
    CompositorMenu();

    /// The button that opens it has just been pressed: a menu is shown for a press and not for its end.
    void prepare();

    /// Asks for it at that place of the window, in its points. False where nobody can be asked; then nothing happens.
    /// `missing` is called in a later turn of the loop when none has come, unless it was asked for again meanwhile.
    bool show(QWindow& window, QPoint place, std::function<void()> missing);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Ends an attempt, and tells what was to be called if it came to nothing.
    std::function<void()> stopWaiting();

    std::uint32_t serial_ = 0;
    /// While it is waited for.
    QPointer<QWindow> window_;
    std::function<void()> missing_;
    QTimer patience_;
};

} // namespace velloran::platform::waylandwindow
