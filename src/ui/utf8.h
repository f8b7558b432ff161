#pragma once

#include <QString>

#include <string_view>

namespace velloran {

/// UTF-8 as the toolkit's text.
inline QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace velloran
