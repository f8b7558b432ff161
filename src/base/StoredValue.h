#pragma once

#include "base/Bytes.h"
#include "base/Date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace velloran {

/// A value of the user's settings. Its text in the file tells its type: `"@ByteArray(...)"`, `Date(812345678.25)`,
/// `42`, `true`.
using StoredValue = std::variant<Bytes, Date, std::int64_t, bool>;

/// The value as it stands behind the equals sign: one line of printable ASCII. `readStoredValue` gives the same value
/// back, dates and bytes to the bit.
std::string writeStoredValue(const StoredValue& value);

/// The value that `text` stands for; nothing when it is of none of the types, or damaged. Quotes and escapes follow the
/// INI form of the toolkit, so that bytes written by its settings class are read as well.
std::optional<StoredValue> readStoredValue(std::string_view text);

} // namespace velloran
