#include "platform/sway/reply.h"

#include <algorithm>
#include <utility>

namespace velloran::platform::sway {

std::optional<json::Value> parsed(const Message& message) {
    auto value = json::parse(message.payload);
    return value ? std::optional(std::move(value).value()) : std::nullopt;
}

std::string textAt(const json::Value& value, std::string_view member, std::string_view inner) {
    const auto found = value.is_object() ? value.find(member) : value.end();
    if (!value.is_object() || found == value.end()) {
        return {};
    }
    return inner.empty() ? json::asText(*found).value_or("") : textAt(*found, inner);
}

bool isSuccess(const Message& message) {
    const auto results = parsed(message);
    return results && results->is_array() && !results->empty() &&
           std::all_of(results->begin(), results->end(), [](const json::Value& result) {
               return result.is_object() && result.contains("success") && json::asBoolean(result["success"]) == true;
           });
}

} // namespace velloran::platform::sway
