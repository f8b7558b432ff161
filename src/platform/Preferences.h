#pragma once

#include "base/StoredValue.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloran::platform {

/// The user's stored settings: typed values under text keys. Reading never fails: a key that is not there, or whose
/// value has another type, gives nothing. Reading sees every change from the moment on in which it was made, whether or
/// not it is stored already. Writing tells nobody when it fails, and loses nothing that was stored before. Main thread.
class Preferences {
public:
    using Value = StoredValue;

    /// What becomes of one key.
    struct Change {
        std::string key;
        /// Nothing takes the key out.
        std::optional<Value> value;
    };

    Preferences() = default;
    Preferences(const Preferences&) = delete;
    Preferences& operator=(const Preferences&) = delete;
    virtual ~Preferences() = default;

    [[nodiscard]] virtual std::optional<Bytes> bytes(const std::string& key) const = 0;
    /// Equal, to the bit, to the date that was stored.
    [[nodiscard]] virtual std::optional<Date> date(const std::string& key) const = 0;
    [[nodiscard]] virtual std::optional<std::int64_t> integer(const std::string& key) const = 0;
    [[nodiscard]] virtual std::optional<bool> truth(const std::string& key) const = 0;

    /// Whether the key holds anything at all, of whatever type.
    [[nodiscard]] virtual bool holds(const std::string& key) const = 0;

    /// Makes all the changes, one after the other, as one: who looks at what is stored, after a crash as well, finds
    /// none of them or all. Never waits for the disk. Changes are stored in the order of these calls.
    virtual void change(const std::vector<Change>& changes) = 0;

    // One change on its own.
    void setBytes(const std::string& key, const Bytes& value) { change({{key, value}}); }

    void setDate(const std::string& key, Date value) { change({{key, value}}); }

    void setInteger(const std::string& key, std::int64_t value) { change({{key, value}}); }

    void setTruth(const std::string& key, bool value) { change({{key, value}}); }

    void remove(const std::string& key) { change({{key, std::nullopt}}); }
};

} // namespace velloran::platform
