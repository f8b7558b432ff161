#pragma once

#include <QString>

namespace velloran::platform::portal {

/// Portals take a program by the name of its desktop entry only, which a start from the source tree does not have.
/// Where none is installed, gives `program`, an absolute path, one in the user's data folder that no menu shows; one
/// that another build was given is replaced. Where one is installed, that is removed. False when there is none in the
/// end.
bool provideDesktopEntry(const QString& applicationName, const QString& program);

} // namespace velloran::platform::portal
