// Arbitrary bytes as what a compositor sends, cut anywhere, and as the user's configuration of one: the same messages
// come however the bytes are cut, what is written is read again, and reading comes to an end. What an include names
// is bytes as well.

#include "fuzz/require.h"
#include "platform/sway/UserBindings.h"
#include "platform/sway/messages.h"
#include "platform/sway/reply.h"
#include "platform/sway/shellWords.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using namespace velloran;
using namespace velloran::platform::sway;

namespace {

struct Read {
    std::vector<Message> messages;
    bool isBroken = false;

    friend bool operator==(const Read&, const Read&) = default;
};

Read readInPieces(std::string_view bytes, std::size_t piece) {
    MessageReader reader;
    Read read;
    for (std::size_t begin = 0; begin < bytes.size(); begin += piece) {
        reader.append(bytes.substr(begin, piece));
        while (auto message = reader.next()) {
            require(!reader.isBroken(), "what is broken gives no message");
            read.messages.push_back(*std::move(message));
        }
    }
    read.isBroken = reader.isBroken();
    return read;
}

/// What the program takes out of a reply or an event.
void checkReply(const Message& message) {
    const auto value = parsed(message);
    require(value || !isSuccess(message), "what cannot be read was no success");
    if (!value) {
        return;
    }
    for (const char* const member : {"loaded_config_file_name", "config", "change"}) {
        const std::string text = textAt(*value, member);
        require(text.empty() || (value->is_object() && value->contains(member)), "a text is that of its member");
        require(message.payload.size() >= text.size(), "a text is no longer than what it was in");
    }
    require(message.payload.size() >= textAt(*value, "binding", "command").size(), "so is one within another");
    require(!isSuccess(message) || value->is_array(), "success is told for each command");
}

void checkMessages(std::string_view bytes, std::size_t piece) {
    const Read read = readInPieces(bytes, bytes.size() + 1);
    require(readInPieces(bytes, piece) == read, "how the bytes are cut changes nothing");
    std::string written;
    for (const Message& message : read.messages) {
        written += encode(message);
    }
    for (const Message& message : read.messages) {
        checkReply(message);
    }
    require(bytes.starts_with(written), "a message is written as it was read");
    require(readInPieces(written, piece).messages == read.messages, "what is written is read");
}

void checkConfiguration(const std::string& text) {
    // It includes itself, and ever smaller parts of itself: all of them together are no longer than it.
    std::size_t part = text.size();
    const auto bindings = userBindings({"/a/config", text}, [&](const std::string& words, const std::string& folder) {
        require(folder.starts_with('/') && folder.ends_with('/'), "a folder is told whole");
        part /= 2;
        return std::vector<ConfigurationFile>{{"/a/config", text}, {folder + words, text.substr(text.size() - part)}};
    });
    for (const UserBinding& binding : bindings) {
        require(!binding.key.empty() && binding.modifiers < 256, "a binding is of a key");
        require(binding.key.find('+') == std::string::npos, "a binding is of one key");
    }
}

/// What fits nothing but itself, as a shell reads it.
std::string withoutBackslashes(const std::string& pattern) {
    std::string text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        i += pattern[i] == '\\' ? 1U : 0U;
        require(i < pattern.size(), "a backslash stands before something");
        text += pattern[i];
    }
    return text;
}

void checkShellWords(const std::string& line) {
    const Variables variables{{"HOME", "/home/one"}, {"USER", "one"}, {"A", "a b\\"}, {"B", "*"}, {"E", ""}};
    const auto words = expandShellWords(line, variables);
    for (const ShellWord& word : words.value_or(std::vector<ShellWord>())) {
        require(withoutBackslashes(word.pattern) == word.text, "a word and its pattern are the same");
        require(word.text.find('\0') == std::string::npos, "a name of a file ends where it ends");
    }
    const bool canStand = line.find('\0') == std::string::npos;
    if (words && canStand) {
        const auto twice = expandShellWords(line + ' ' + line, variables);
        require(!twice || twice->size() == 2 * words->size(), "one word after another");
    }
    if (canStand && line.find('\'') == std::string::npos) {
        const auto quoted = expandShellWords('\'' + line + '\'', variables);
        require(!quoted || *quoted == std::vector{ShellWord{literalPattern(line), line}}, "quoted it is what it is");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (!bytes.empty()) {
        checkMessages(bytes.substr(1), std::size_t{1} + data[0] % 32);
    }
    // The bytes as one whole reply too: seldom are they a message with the right length in front.
    checkReply({MessageType::getVersion, std::string(bytes)});
    checkConfiguration(std::string(bytes));
    checkShellWords(std::string(bytes));
    return 0;
}
