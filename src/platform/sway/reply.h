#pragma once

#include "base/strictJson.h"
#include "platform/sway/messages.h"

#include <optional>
#include <string>
#include <string_view>

namespace velloran::platform::sway {

/// What a message says; nothing where that cannot be read.
std::optional<json::Value> parsed(const Message& message);

/// The text at the end of a path of members; empty where there is none.
std::string textAt(const json::Value& value, std::string_view member, std::string_view inner = {});

/// Whether every command of a line was done.
bool isSuccess(const Message& message);

} // namespace velloran::platform::sway
