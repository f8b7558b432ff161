// Arbitrary bytes as the text of the settings file, and as what a program stores in it: what was written is read again,
// whatever else stands in the file stays, and a value comes back to the bit.

#include "base/IniText.h"
#include "base/StoredValue.h"
#include "fuzz/require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

using namespace velloran;

namespace {

/// Takes everything up to the next zero, and the zero, off `text`.
std::string_view takePart(std::string_view& text) {
    const std::string_view part = text.substr(0, text.find('\0'));
    text.remove_prefix(std::min(text.size(), part.size() + 1));
    return part;
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.size(), lines.back().size() + 1));
    }
    return lines;
}

/// Whether `some` are among `all`, in the same order.
bool areAmong(const std::vector<std::string_view>& some, const std::vector<std::string_view>& all) {
    auto next = some.begin();
    for (const std::string_view line : all) {
        if (next != some.end() && *next == line) {
            ++next;
        }
    }
    return next == some.end();
}

std::string checkedText(const StoredValue& value) {
    const std::string text = writeStoredValue(value);
    require(std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; }), "a value is one line");
    // Their text is compared too: it tells a zero from a negative one.
    const auto again = readStoredValue(text);
    require(again == value && writeStoredValue(*again) == text, "a value comes back equal");
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string_view key = takePart(rest);
    const std::string_view otherKey = takePart(rest);
    const std::string value = checkedText(Bytes(takePart(rest)));
    if (const auto read = readStoredValue(rest)) {
        checkedText(*read);
    }

    const IniText before(rest);
    const std::string textBefore = before.text();
    require(linesOf(textBefore) == linesOf(rest), "reading changes nothing");
    auto unreadable = linesOf(textBefore);
    std::erase_if(unreadable, [](std::string_view line) { return line.find('=') != std::string_view::npos; });
    if (const auto found = before.value(key)) {
        if (const auto read = readStoredValue(*found)) {
            checkedText(*read);
        }
    }

    IniText text = before;
    text.setValue(key, value);
    const std::string textAfter = text.text();
    require(text.value(key) == value && IniText(textAfter).value(key) == value, "what was written is read");
    require(otherKey == key || IniText(textAfter).value(otherKey) == before.value(otherKey), "other values stay");
    require(areAmong(unreadable, linesOf(textAfter)), "what nobody can read stays");

    text.remove(key);
    require(!text.value(key) && !IniText(text.text()).value(key), "what was removed is gone");
    require(otherKey == key || IniText(text.text()).value(otherKey) == before.value(otherKey), "other values stay");
    require(areAmong(unreadable, linesOf(text.text())), "what nobody can read stays");
    require(areAmong(linesOf(text.text()), linesOf(textAfter)), "removing adds nothing");
    return 0;
}
