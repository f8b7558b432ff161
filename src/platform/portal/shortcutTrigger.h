#pragma once

#include <QString>

#include "keys/KeyboardLayout.h"

#include <cstdint>

namespace velloran::platform::portal {

/// A combination as the portal wants it: "CTRL+ALT+s". What counts for desktops is the symbol of the key, so it is told
/// by the layout. Empty where the key has none.
QString triggerOf(std::uint32_t keyCode, std::uint32_t modifiers, const keys::KeyboardLayout& layout);

/// What a shortcut with that trigger is called, each combination something else: some desktops keep for a name what was
/// bound to it first, whatever is asked for later.
QString identifierOf(const QString& trigger);

/// Whether a desktop's words, which may be any, say exactly that trigger. Words that are not known say another.
bool saysTrigger(const QString& words, const QString& trigger);

} // namespace velloran::platform::portal
