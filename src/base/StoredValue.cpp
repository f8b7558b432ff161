#include "base/StoredValue.h"

#include "base/text.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace velloran {

namespace {

constexpr std::string_view bytesPrefix = "@ByteArray(";
constexpr std::string_view datePrefix = "Date(";
constexpr std::string_view suffix = ")";

/// The one-letter escapes and what they stand for.
constexpr std::string_view escapeLetters = "abfnrtv\"?'\\";
constexpr std::string_view escapedCharacters = "\a\b\f\n\r\t\v\"?'\\";

bool isHexDigit(char character) {
    return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

bool isOctalDigit(char character) {
    return character >= '0' && character <= '7';
}

unsigned digitValue(char digit) {
    if (digit <= '9') {
        return static_cast<unsigned>(digit - '0');
    }
    return static_cast<unsigned>(std::tolower(static_cast<unsigned char>(digit)) - 'a') + 10;
}

std::string escaped(const Bytes& bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    // A numeric escape has no end of its own, so a hexadecimal digit behind one is written as an escape too.
    bool isBehindNumber = false;
    for (const char character : bytes) {
        const auto code = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            text += '\\';
            text += character;
            isBehindNumber = false;
        } else if (code < 0x20 || code >= 0x7F || (isBehindNumber && isHexDigit(character))) {
            text += "\\x";
            text += digits[code >> 4U];
            text += digits[code & 0xFU];
            isBehindNumber = true;
        } else {
            text += character;
            isBehindNumber = false;
        }
    }
    return text;
}

/// Takes the digits of a numeric escape off `text`; nothing where they give no byte.
template<typename IsDigit>
std::optional<char> takeNumber(std::string_view& text, unsigned base, IsDigit isDigit) {
    unsigned code = 0;
    std::size_t count = 0;
    while (count < text.size() && isDigit(text[count]) && code <= 0xFF) {
        code = code * base + digitValue(text[count]);
        ++count;
    }
    text.remove_prefix(count);
    if (count == 0 || code > 0xFF) {
        return std::nullopt;
    }
    return static_cast<char>(static_cast<unsigned char>(code));
}

/// Takes what follows a backslash off `text`.
std::optional<char> takeEscape(std::string_view& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    if (isOctalDigit(text.front())) {
        return takeNumber(text, 8, isOctalDigit);
    }
    const char letter = text.front();
    text.remove_prefix(1);
    if (letter == 'x') {
        return takeNumber(text, 16, isHexDigit);
    }
    const std::size_t place = escapeLetters.find(letter);
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    return escapedCharacters[place];
}

/// The text without quotes and escapes; nothing when a quote stays open, an escape is damaged, or it is a list.
std::optional<std::string> unescaped(std::string_view text) {
    std::string result;
    bool isQuoted = false;
    while (!text.empty()) {
        const char character = text.front();
        text.remove_prefix(1);
        if (character == '"') {
            isQuoted = !isQuoted;
        } else if (character == '\\') {
            const auto meant = takeEscape(text);
            if (!meant) {
                return std::nullopt;
            }
            result += *meant;
        } else if (character == ',' && !isQuoted) {
            return std::nullopt;
        } else {
            result += character;
        }
    }
    return isQuoted ? std::nullopt : std::optional(result);
}

/// What stands between `prefix` and the closing bracket; nothing when `text` has another form.
std::optional<std::string_view> enclosed(std::string_view text, std::string_view prefix) {
    if (text.size() < prefix.size() + suffix.size() || !text.starts_with(prefix) || !text.ends_with(suffix)) {
        return std::nullopt;
    }
    return text.substr(prefix.size(), text.size() - prefix.size() - suffix.size());
}

struct Writer {
    std::string operator()(const Bytes& bytes) const {
        return '"' + std::string(bytesPrefix) + escaped(bytes) + std::string(suffix) + '"';
    }

    std::string operator()(Date date) const {
        return std::string(datePrefix) + shortestDecimal(date.secondsSinceReference()) + std::string(suffix);
    }

    std::string operator()(std::int64_t integer) const { return decimal(integer); }

    std::string operator()(bool truth) const { return truth ? "true" : "false"; }
};

} // namespace

std::string writeStoredValue(const StoredValue& value) {
    return std::visit(Writer(), value);
}

std::optional<StoredValue> readStoredValue(std::string_view text) {
    const auto plain = unescaped(text);
    if (!plain) {
        return std::nullopt;
    }
    if (const auto bytes = enclosed(*plain, bytesPrefix)) {
        return Bytes(*bytes);
    }
    if (const auto date = enclosed(*plain, datePrefix)) {
        const auto seconds = parseReal(*date);
        return seconds ? std::optional<StoredValue>(Date(*seconds)) : std::nullopt;
    }
    if (*plain == "true" || *plain == "false") {
        return *plain == "true";
    }
    const auto integer = parseInteger(*plain);
    return integer ? std::optional<StoredValue>(*integer) : std::nullopt;
}

} // namespace velloran
