#include "platform/sway/messages.h"

#include <array>
#include <cstring>

namespace velloran::platform::sway {

namespace {

constexpr std::string_view mark = "i3-ipc";
constexpr std::size_t headSize = mark.size() + 2 * sizeof(std::uint32_t);
constexpr std::size_t mostPayload = std::size_t{4} << 20U;

void appendNumber(std::string& bytes, std::uint32_t number) {
    std::array<char, sizeof number> raw{};
    std::memcpy(raw.data(), &number, sizeof number);
    bytes.append(raw.data(), raw.size());
}

std::uint32_t readNumber(std::string_view bytes) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

} // namespace

std::string encode(const Message& message) {
    // Both ends run on one machine: numbers are as it writes them.
    std::string bytes(mark);
    appendNumber(bytes, static_cast<std::uint32_t>(message.payload.size()));
    appendNumber(bytes, static_cast<std::uint32_t>(message.type));
    return bytes + message.payload;
}

std::optional<Message> MessageReader::next() {
    if (isBroken_ || unread_.size() < headSize) {
        return std::nullopt;
    }
    const std::string_view head(unread_.data(), headSize);
    const std::size_t size = readNumber(head.substr(mark.size()));
    if (!head.starts_with(mark) || size > mostPayload) {
        isBroken_ = true;
        return std::nullopt;
    }
    if (unread_.size() < headSize + size) {
        return std::nullopt;
    }
    const auto type = static_cast<MessageType>(readNumber(head.substr(mark.size() + sizeof(std::uint32_t))));
    Message message{type, unread_.substr(headSize, size)};
    unread_.erase(0, headSize + size);
    return message;
}

} // namespace velloran::platform::sway
