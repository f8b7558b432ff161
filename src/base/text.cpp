#include "base/text.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <array>
#include <charconv>
#include <cmath>

namespace velloran {

namespace {

/// `to_chars` and `from_chars` know no locale, which is why all numbers go through them.
template<typename... Arguments>
std::string toText(Arguments... arguments) {
    // The longest is a double with all its digits before the full stop (309) and a few behind it.
    std::array<char, 400> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): to_chars fills it
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), arguments...);
    return {buffer.data(), result.ptr};
}

/// `from_chars` takes a minus sign but no plus sign. "+-1" must not become readable by taking the plus sign away.
std::string_view withoutPlus(std::string_view text) {
    if (text.size() > 1 && text.front() == '+' && text[1] != '-') {
        text.remove_prefix(1);
    }
    return text;
}

template<typename Number, typename... Format>
std::optional<Number> fromText(std::string_view text, Format... format) {
    text = withoutPlus(text);
    Number number{};
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number, format...);
    if (result.ec != std::errc() || result.ptr != end) {
        return std::nullopt;
    }
    return number;
}

// The library's macros for UTF-8 convert between character types as they please.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"

/// The code point that starts at `position`, which moves behind it; negative where the text is not well formed.
UChar32 nextCharacter(std::string_view text, std::int32_t& position) {
    const auto length = static_cast<std::int32_t>(text.size());
    UChar32 character = 0;
    U8_NEXT(text.data(), position, length, character);
    return character;
}

/// The code point that ends before `position`, which moves to its start; never goes before `begin`.
UChar32 previousCharacter(std::string_view text, std::int32_t begin, std::int32_t& position) {
    UChar32 character = 0;
    U8_PREV(text.data(), begin, position, character);
    return character;
}

#pragma GCC diagnostic pop

bool isBlank(UChar32 character) {
    return character >= 0 && u_isblank(character) != 0;
}

} // namespace

std::string trimmed(std::string_view text) {
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t begin = 0;
    for (std::int32_t next = 0; next < length && isBlank(nextCharacter(text, next));) {
        begin = next;
    }
    std::int32_t end = length;
    for (std::int32_t previous = end; previous > begin && isBlank(previousCharacter(text, begin, previous));) {
        end = previous;
    }
    return std::string(text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin)));
}

std::string upperCased(std::string_view text) {
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    // The empty locale is the root one: Turkish rules never apply.
    icu::CaseMap::utf8ToUpper("", 0, icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())), sink,
                              nullptr, status);
    return U_SUCCESS(status) ? result : std::string(text);
}

bool isValidUtf8(std::string_view text) {
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t position = 0; position < length;) {
        if (nextCharacter(text, position) < 0) {
            return false;
        }
    }
    return true;
}

std::string decimal(std::int64_t value) {
    return toText(value);
}

std::string shortestDecimal(double value) {
    std::string text = toText(value);
    const bool isWhole = text.find_first_not_of("-0123456789") == std::string::npos;
    return isWhole ? text + ".0" : text;
}

std::string fixedDecimal(double value, int decimals) {
    return toText(value, std::chars_format::fixed, decimals);
}

std::optional<double> parseReal(std::string_view text) {
    const auto number = fromText<double>(text, std::chars_format::general);
    if (!number || !std::isfinite(*number)) {
        return std::nullopt;
    }
    return number;
}

std::optional<std::int64_t> parseInteger(std::string_view text) {
    return fromText<std::int64_t>(text);
}

} // namespace velloran
