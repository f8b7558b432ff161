#include "base/strictJson.h"

#include "base/text.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

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

/// Builds a value without what `parseRecord` leaves out.
class RecordBuilder final : public nlohmann::json_sax<Value> {
public:
    explicit RecordBuilder(std::size_t depth) : depth_(depth) {}

    bool null() override { return put(nullptr); }

    bool boolean(bool value) override { return put(value); }

    bool number_integer(std::int64_t value) override { return put(value); }

    bool number_unsigned(std::uint64_t value) override { return put(value); }

    bool number_float(double value, const std::string& /*text*/) override { return put(value); }

    bool string(std::string& value) override { return put(std::move(value)); }

    bool binary(Value::binary_t& /*value*/) override { return false; }

    bool start_object(std::size_t /*size*/) override { return begin(Value::object()); }

    bool end_object() override { return end(); }

    bool start_array(std::size_t /*size*/) override { return begin(Value::array()); }

    bool end_array() override { return end(); }

    bool key(std::string& key) override {
        if (leftOut_ == 0) {
            key_ = std::move(key);
        }
        return true;
    }

    bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                     const nlohmann::detail::exception& /*error*/) override {
        return false;
    }

    /// What has been built.
    Value root;

private:
    template<typename T>
    bool put(T&& value) {
        if (leftOut_ == 0) {
            place() = std::forward<T>(value);
        }
        return true;
    }

    /// Where the next value goes.
    Value& place() { return open_.empty() ? root : (*open_.back())[key_]; }

    bool begin(Value container) {
        if (leftOut_ > 0) {
            ++leftOut_;
            return true;
        }
        Value& placed = place();
        placed = std::move(container);
        if (placed.is_object() && open_.size() < depth_) {
            open_.push_back(&placed);
        } else {
            leftOut_ = 1;
        }
        return true;
    }

    bool end() {
        if (leftOut_ > 0) {
            --leftOut_;
        } else {
            open_.pop_back();
        }
        return true;
    }

    std::size_t depth_;
    /// The objects that are being filled, outermost first.
    std::vector<Value*> open_;
    std::string key_;
    /// How many containers deep it is in what is left out.
    std::size_t leftOut_ = 0;
};

} // namespace

Result<Value> parse(const Bytes& bytes) {
    Value value = Value::parse(bytes, nullptr, false);
    if (value.is_discarded()) {
        return Error{"not a JSON text"};
    }
    return value;
}

Result<Value> parseRecord(const Bytes& bytes, std::size_t depth) {
    RecordBuilder builder(depth);
    if (!Value::sax_parse(bytes, &builder)) {
        return Error{"not a JSON text"};
    }
    return std::move(builder.root);
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
