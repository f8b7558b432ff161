#pragma once

#include "platform/Preferences.h"

#include <map>
#include <variant>
#include <vector>

namespace velloran::fakes {

/// Preferences in memory. Tests may put in any value under any key and make writing fail.
class FakePreferences final : public platform::Preferences {
public:
    using Value = std::variant<Bytes, Date, std::int64_t, bool>;

    std::optional<Bytes> bytes(const std::string& key) const override { return get<Bytes>(key); }

    std::optional<Date> date(const std::string& key) const override { return get<Date>(key); }

    std::optional<std::int64_t> integer(const std::string& key) const override { return get<std::int64_t>(key); }

    std::optional<bool> truth(const std::string& key) const override { return get<bool>(key); }

    void setBytes(const std::string& key, const Bytes& value) override { set(key, value); }

    void setDate(const std::string& key, Date value) override { set(key, value); }

    void setInteger(const std::string& key, std::int64_t value) override { set(key, value); }

    void setTruth(const std::string& key, bool value) override { set(key, value); }

    bool holds(const std::string& key) const override { return values.contains(key); }

    void remove(const std::string& key) override {
        ++writes;
        if (!isReadOnly) {
            values.erase(key);
        }
    }

    std::map<std::string, Value> values;
    /// Writing changes nothing while this is set.
    bool isReadOnly = false;
    /// How often something was written or removed, or tried to be.
    int writes = 0;
    /// The keys written, in order.
    std::vector<std::string> written;

private:
    template<typename T>
    std::optional<T> get(const std::string& key) const {
        const auto found = values.find(key);
        if (found == values.end() || !std::holds_alternative<T>(found->second)) {
            return std::nullopt;
        }
        return std::get<T>(found->second);
    }

    void set(const std::string& key, Value value) {
        ++writes;
        if (isReadOnly) {
            return;
        }
        written.push_back(key);
        values[key] = std::move(value);
    }
};

} // namespace velloran::fakes
