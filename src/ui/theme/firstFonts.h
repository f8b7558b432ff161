#pragma once

#include <QFont>

#include <vector>

namespace velloran {

/// The fonts of all text that the window shows when it opens, unless text is larger than normal.
[[nodiscard]] std::vector<QFont> firstFonts();

/// Has the toolkit find and open them, which it would otherwise do text by text while the window is made: each takes it
/// as long as a dozen items. To be called while there is time, once the typeface is known. Main thread.
void openFirstFonts();

} // namespace velloran
