#pragma once

#include <QIcon>

namespace velloran {

/// A desktop that names no typeface leaves the toolkit with a generic name, which may stand for anything. Then one is
/// taken that has all the weights of the window, if it is installed. Needs the application object.
void chooseTypeface();

/// What desktops show for the window, in all sizes that there are. Needs the application object.
QIcon windowIcon();

} // namespace velloran
