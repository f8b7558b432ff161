#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velloran::platform::sway {

/// What a message is, by the compositor's numbers: what it is asked for, which the answer repeats, or what it tells by
/// itself.
enum class MessageType : std::uint32_t {
    runCommand = 0,
    subscribe = 2,
    getVersion = 7,
    getConfig = 9,
    workspaceEvent = 0x8000'0000,
    bindingEvent = 0x8000'0005,
};

/// One message of a compositor that is spoken to over a socket of its own, or one for it.
struct Message {
    MessageType type;
    std::string payload;

    friend bool operator==(const Message&, const Message&) = default;
};

/// The bytes of a message.
std::string encode(const Message& message);

/// Puts messages together from bytes that come in pieces.
class MessageReader {
public:
    void append(std::string_view bytes) { unread_ += bytes; }

    /// The next whole message; nothing while there is none.
    std::optional<Message> next();

    /// Whether what came was no message, or one of a size that nobody sends. None follows then.
    [[nodiscard]] bool isBroken() const { return isBroken_; }

private:
    std::string unread_;
    bool isBroken_ = false;
};

} // namespace velloran::platform::sway
