#pragma once

#include "platform/SystemSounds.h"

namespace velloran::platform {

/// The one function of a module with the system's sounds, as the dynamic linker knows it. Program and module have to be
/// of the same build, for they share classes: the module answers with null to any other version than its own. The
/// result belongs to the caller.
using MakeSounds = SystemSounds* (*)(const char* version);

inline constexpr char makeSoundsName[] = "velloranMakeSounds";

} // namespace velloran::platform
