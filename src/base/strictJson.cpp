#include "base/strictJson.h"

#include "base/text.h"

#include <algorithm>

namespace velloran::json {

namespace {

/// The library writes a number that is not finite as null, and throws on text that is not UTF-8.
bool isWritable(const Value& value) {
    switch (value.type()) {
    case Value::value_t::object:
        return std::all_of(value.items().begin(), value.items().end(),
                           [](const auto& item) { return isValidUtf8(item.key()) && isWritable(item.value()); });
    case Value::value_t::array:
        return std::all_of(value.begin(), value.end(), isWritable);
    case Value::value_t::number_float:
        return std::isfinite(value.get<double>());
    case Value::value_t::string:
        return isValidUtf8(value.get_ref<const std::string&>());
    default:
        return true;
    }
}

} // namespace

Result<Value> parse(const Bytes& bytes) {
    Value value = Value::parse(bytes, nullptr, false);
    if (value.is_discarded()) {
        return Error{"not a JSON text"};
    }
    return value;
}

Result<Bytes> write(const Value& value, Layout layout) {
    if (!isWritable(value)) {
        return Error{"a number that is not finite, or text that is not UTF-8, has no JSON form"};
    }
    return value.dump(layout == Layout::pretty ? 2 : -1);
}

std::optional<bool> asBoolean(const Value& value) {
    return value.is_boolean() ? std::optional(value.get<bool>()) : std::nullopt;
}

std::optional<double> asReal(const Value& value) {
    return value.is_number() ? std::optional(value.get<double>()) : std::nullopt;
}

std::optional<std::string> asText(const Value& value) {
    return value.is_string() ? std::optional(value.get<std::string>()) : std::nullopt;
}

ObjectReader::ObjectReader(const Value& value) : object_(value) {
    if (!value.is_object()) {
        failure_ = Error{"not an object"};
    }
}

const Value* ObjectReader::find(const char* key) const {
    if (!object_.is_object()) {
        return nullptr;
    }
    const auto found = object_.find(key);
    return found == object_.end() ? nullptr : &*found;
}

void ObjectReader::fail(const char* key, std::string_view what) {
    if (!failure_) {
        failure_ = Error{std::string(key) + " " + std::string(what)};
    }
}

} // namespace velloran::json
