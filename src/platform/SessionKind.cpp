#include "platform/SessionKind.h"

#include <cstdlib>

namespace velloran::platform {

namespace {

/// A variable set to nothing counts as not set.
bool isSet(const Environment& environment, const char* name) {
    const auto value = environment(name);
    return value && !value->empty();
}

} // namespace

BackendChoice chooseBackend(const Environment& environment) {
    if (isSet(environment, "WAYLAND_DISPLAY") || environment("XDG_SESSION_TYPE") == "wayland") {
        return {Backend::unavailable,
                "Input cannot be posted: this is a Wayland session, and an X server inside it reaches "
                "only some windows."};
    }
    if (isSet(environment, "DISPLAY")) {
        return {Backend::x11, "Input is posted through the X server: the session runs on one."};
    }
    return {Backend::unavailable, "Input cannot be posted: there is no display."};
}

std::optional<std::string> processEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

} // namespace velloran::platform
