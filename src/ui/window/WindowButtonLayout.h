#pragma once

#include <QString>

#include <vector>

namespace velloran {

/// A button of the window's frame.
enum class WindowButton {
    minimize,
    maximize,
    close,
};

/// Which buttons stand at the two ends of the title bar, each from left to right.
struct WindowButtonLayout {
    std::vector<WindowButton> left;
    std::vector<WindowButton> right;

    /// Minimise, maximise, close on the right, where a desktop says nothing.
    static WindowButtonLayout standard();

    /// Reads the form "menu:minimize,maximize,close". Unknown and repeated names are left out.
    static WindowButtonLayout fromNames(const QString& setting);

    /// Reads one letter for each button: I minimises, A maximises, X closes. Other and repeated letters are left out.
    static WindowButtonLayout fromLetters(const QString& left, const QString& right);

    friend bool operator==(const WindowButtonLayout&, const WindowButtonLayout&) = default;
};

/// "minimize", "maximize" or "close".
QString nameOf(WindowButton button);

} // namespace velloran
