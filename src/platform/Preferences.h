#pragma once

#include "base/Bytes.h"
#include "base/Date.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloran::platform {

/// The user's stored settings: typed values under text keys. Reading never fails: a key that is not there, or whose
/// value has another type, gives nothing. Writing tells nobody when it fails, and loses nothing that was stored before.
/// Main thread.
class Preferences {
public:
    Preferences() = default;
    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;
    virtual ~Preferences() = default;

    [[nodiscard]] virtual std::optional<Bytes> bytes(const std::string& key) const = 0;
    /// Equal, to the bit, to the date that was stored.
    [[nodiscard]] virtual std::optional<Date> date(const std::string& key) const = 0;
    [[nodiscard]] virtual std::optional<std::int64_t> integer(const std::string& key) const = 0;
    [[nodiscard]] virtual std::optional<bool> truth(const std::string& key) const = 0;

    virtual void setBytes(const std::string& key, const Bytes& value) = 0;
    virtual void setDate(const std::string& key, Date value) = 0;
    virtual void setInteger(const std::string& key, std::int64_t value) = 0;
    virtual void setTruth(const std::string& key, bool value) = 0;

    /// Whether the key holds anything at all, of whatever type.
    [[nodiscard]] virtual bool holds(const std::string& key) const = 0;
    virtual void remove(const std::string& key) = 0;
};

} // namespace velloran::platform
