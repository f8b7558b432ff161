#include "base/Uuid.h"

#include <uuid/uuid.h>

#include <cstring>

namespace velloran {

namespace {

constexpr std::size_t textLength = UUID_STR_LEN - 1;

} // namespace

Uuid Uuid::random() {
    Uuid result;
    uuid_generate_random(result.bytes_.data());
    return result;
}

std::optional<Uuid> Uuid::fromText(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;
    }
    Uuid result;
    if (uuid_parse(std::string(text).c_str(), result.bytes_.data()) != 0) {
        return std::nullopt;
    }
    return result;
}

std::string Uuid::text() const {
    char buffer[UUID_STR_LEN];
    uuid_unparse_upper(bytes_.data(), buffer);
    return {buffer, textLength};
}

} // namespace velloran
