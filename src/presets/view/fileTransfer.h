#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace velloran {

/// No file that is read whole is longer than this many bytes.
inline constexpr qint64 longestFile = 67'108'864;

/// The whole content of a regular file; nothing when it cannot be read, is longer than `longestFile` or is no regular
/// file (a pipe or a device might never end).
std::optional<QByteArray> readWholeFile(const QString& path);

/// Puts `bytes` into the file in one step: what was there before stays until all of it is written. False on failure.
bool writeWholeFile(const QString& path, const QByteArray& bytes);

} // namespace velloran
