#pragma once

#include <QString>
#include <QStringList>

namespace velloran::platform::portal {

/// The bus names of the installed back ends of the desktop's portal that have this interface, by what they say of
/// themselves in the data folders; in no order, each once.
QStringList backEndsWith(const QString& interface);

} // namespace velloran::platform::portal
