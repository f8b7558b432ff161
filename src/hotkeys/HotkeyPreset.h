#pragma once

#include "base/Uuid.h"
#include "hotkeys/HotkeyCombo.h"

#include <string>
#include <vector>

namespace velloran {

/// A ready-made shortcut that the user can choose.
struct HotkeyPreset {
    Uuid id;
    /// The menu text.
    std::string label;
    HotkeyCombo combo;

    /// The eight choices, in menu order. Built on first use and kept: identifiers stay the same for the process.
    static const std::vector<HotkeyPreset>& all();
};

} // namespace velloran
