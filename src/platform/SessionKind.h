#pragma once

#include <functional>
#include <optional>
#include <string>

namespace velloran::platform {

/// The facility that clicks in this session.
enum class Backend {
    /// The X server that the session runs on.
    x11,
    /// None: input cannot be posted.
    unavailable,
};

/// A choice, and one sentence that says why.
struct BackendChoice {
    Backend backend;
    std::string reason;

    friend bool operator==(const BackendChoice&, const BackendChoice&) = default;
};

/// Reads a variable of the environment; nothing when it is not set.
using Environment = std::function<std::optional<std::string>(const char* name)>;

/// Chooses by what the session says of itself. On Wayland an X server may well answer, but it only reaches programs
/// that use it themselves and swallows everything else without a word, so it is never chosen there.
BackendChoice chooseBackend(const Environment& environment);

/// The environment of this process.
std::optional<std::string> processEnvironment(const char* name);

} // namespace velloran::platform
