#pragma once

#include "platform/Preferences.h"

#include <map>
#include <variant>
#include <vector>

namespace velloran::fakes {

/// Preferences in memory. Tests may put in any value under any key and make writing fail.
class FakePreferences final : public platform::Preferences {
public:
    std::optional<Bytes> bytes(const std::string& key) const override { return get<Bytes>(key); }

    std::optional<Date> date(const std::string& key) const override { return get<Date>(key); }

    std::optional<std::int64_t> integer(const std::string& key) const override { return get<std::int64_t>(key); }

    std::optional<bool> truth(const std::string& key) const override { return get<bool>(key); }

    bool holds(const std::string& key) const override { return values.contains(key); }

    void change(const std::vector<Change>& changes) override {
        ++writes;
        if (isReadOnly) {
            return;
        }
        for (const auto& [key, value] : changes) {
            if (value) {
                written.push_back(key);
                values[key] = *value;
            } else {
                values.erase(key);
            }
        }
    }

    std::map<std::string, Value> values;
    /// Writing changes nothing while this is set.
    bool isReadOnly = false;
    /// How often something was changed, or tried to be. Changes made as one count once.
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
};

} // namespace velloran::fakes
