#pragma once

#include "harness/observer/Server.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velloran::observer {

/// What the program was started with.
struct Options {
    bool wantsHelp = false;
    std::string display;
    std::optional<Area> window;
    bool isWindowManaged = true;
    std::string title = "observer";
    bool listensToServer = false;
    bool isQuiet = false;
    bool wantsRealTime = false;
    std::optional<std::size_t> expectedClicks;
    std::optional<unsigned> expectedButton;
    double nominalInterval = 0.0;
    double timeout = 60.0;
    double settle = 0.5;
    std::string reportFile;

    /// Why the arguments make no sense; empty when they do.
    std::string error;
};

/// Reads the command line, without the program's name.
Options readOptions(const std::vector<std::string>& arguments);

/// The text of `--help`.
extern const char* const helpText;

} // namespace velloran::observer
