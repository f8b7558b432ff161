#include "platform/gnome/variantText.h"

#include <charconv>
#include <cstdint>

namespace velloran::platform::gnome {

namespace {

void appendUtf8(std::string& text, std::uint32_t character) {
    const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    const auto appendFollowing = [&append, character](unsigned shift) { append(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | (character >> 6));
        appendFollowing(0);
    } else if (character < 0x10000) {
        append(0xE0 | (character >> 12));
        appendFollowing(6);
        appendFollowing(0);
    } else {
        append(0xF0 | (character >> 18));
        appendFollowing(12);
        appendFollowing(6);
        appendFollowing(0);
    }
}

/// Goes through what was written from its beginning.
class Reader {
public:
    explicit Reader(std::string_view written) : rest_(written) {}

    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }

    /// Goes over blanks.
    void skipBlanks() {
        while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\n')) {
            rest_.remove_prefix(1);
        }
    }

    /// Goes over that, where it is what follows.
    bool take(std::string_view expected) {
        if (!rest_.starts_with(expected)) {
            return false;
        }
        rest_.remove_prefix(expected.size());
        return true;
    }

    std::optional<std::string> takeText() {
        const char quote = rest_.empty() ? '\0' : rest_.front();
        if (quote != '\'' && quote != '"') {
            return std::nullopt;
        }
        rest_.remove_prefix(1);
        std::string text;
        while (!rest_.empty()) {
            const char next = rest_.front();
            rest_.remove_prefix(1);
            if (next == quote) {
                return text;
            }
            if (next != '\\') {
                text += next;
            } else if (!takeEscaped(text)) {
                break;
            }
        }
        return std::nullopt;
    }

private:
    bool takeEscaped(std::string& text) {
        if (rest_.empty()) {
            return false;
        }
        const char kind = rest_.front();
        rest_.remove_prefix(1);
        constexpr std::string_view names = "abfnrtv\\'\"";
        constexpr std::string_view meanings = "\a\b\f\n\r\t\v\\'\"";
        if (const auto found = names.find(kind); found != std::string_view::npos) {
            text += meanings[found];
            return true;
        }
        return (kind == 'u' && takeCharacter(text, 4)) || (kind == 'U' && takeCharacter(text, 8));
    }

    bool takeCharacter(std::string& text, std::size_t digits) {
        if (rest_.size() < digits) {
            return false;
        }
        std::uint32_t character = 0;
        const char* const end = rest_.data() + digits;
        const auto [stopped, error] = std::from_chars(rest_.data(), end, character, 16);
        const bool isSurrogate = character >= 0xD800 && character < 0xE000;
        if (error != std::errc() || stopped != end || character == 0 || character > 0x10FFFF || isSurrogate) {
            return false;
        }
        rest_.remove_prefix(digits);
        appendUtf8(text, character);
        return true;
    }

    std::string_view rest_;
};

} // namespace

std::optional<std::string> readText(std::string_view written) {
    Reader reader(written);
    reader.skipBlanks();
    auto text = reader.takeText();
    reader.skipBlanks();
    return reader.isAtEnd() ? text : std::nullopt;
}

std::optional<std::vector<std::string>> readTextList(std::string_view written) {
    std::vector<std::string> texts;
    Reader reader(written);
    reader.skipBlanks();
    const bool saysType = reader.take("@as ");
    reader.skipBlanks();
    if (!reader.take("[")) {
        return std::nullopt;
    }
    reader.skipBlanks();
    // Without its type an empty one could be a list of anything.
    bool isOver = saysType && reader.take("]");
    while (!isOver) {
        const auto text = reader.takeText();
        reader.skipBlanks();
        isOver = reader.take("]");
        if (!text || (!isOver && !reader.take(","))) {
            return std::nullopt;
        }
        texts.push_back(*text);
        reader.skipBlanks();
    }
    reader.skipBlanks();
    return reader.isAtEnd() ? std::optional(texts) : std::nullopt;
}

std::string writeText(std::string_view text) {
    std::string written = "'";
    for (const char character : text) {
        if (character == '\n') {
            written += "\\n";
            continue;
        }
        if (character == '\'' || character == '\\') {
            written += '\\';
        }
        written += character;
    }
    return written + '\'';
}

std::string writeTextList(const std::vector<std::string>& texts) {
    if (texts.empty()) {
        return "@as []";
    }
    std::string written = "[";
    for (const std::string& text : texts) {
        written += (written.size() > 1 ? ", " : "") + writeText(text);
    }
    return written + ']';
}

} // namespace velloran::platform::gnome
