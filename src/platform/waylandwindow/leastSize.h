#pragma once

#include <QSize>

class QWindow;

namespace velloran::platform::waylandwindow {

/// Has the compositor keep the window, which is to be shown already, from getting smaller than that, in its points.
/// A least size that the toolkit knows of is kept by the toolkit as well: in a tile that is smaller, the window would
/// stick out and be cut off. To be called again when it changes. On other window systems nothing happens. Main thread;
/// needs the toolkit's application object.
void keepLeastSize(QWindow& window, QSize size);

} // namespace velloran::platform::waylandwindow
