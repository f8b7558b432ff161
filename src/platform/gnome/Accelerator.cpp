#include "platform/gnome/Accelerator.h"

#include "platform/HotKeys.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace velloran::platform::gnome {

namespace {

struct Modifier {
    std::string_view name;
    std::uint32_t bit;
    /// The one that is written. Of the others each has been written by some release.
    bool isCustomary;
    std::string_view word;
};

constexpr std::array<Modifier, 10> modifierNames{{{"control", controlModifier, true, "Ctrl+"},
                                                  {"primary", controlModifier, false, ""},
                                                  {"ctrl", controlModifier, false, ""},
                                                  {"ctl", controlModifier, false, ""},
                                                  {"alt", optionModifier, true, "Alt+"},
                                                  {"mod1", optionModifier, false, ""},
                                                  {"shift", shiftModifier, true, "Shift+"},
                                                  {"shft", shiftModifier, false, ""},
                                                  {"super", commandModifier, true, "Super+"},
                                                  {"mod4", commandModifier, false, ""}}};

std::string capitalised(std::string_view name) {
    std::string text(name);
    if (!text.empty()) {
        text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
    }
    return text;
}

std::string lowered(std::string_view text) {
    std::string small(text);
    std::transform(small.begin(), small.end(), small.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return small;
}

} // namespace

std::optional<Accelerator> Accelerator::read(std::string_view written) {
    Accelerator read;
    while (written.starts_with('<')) {
        const auto end = written.find('>');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        const std::string name = lowered(written.substr(1, end - 1));
        const auto* const found = std::find_if(modifierNames.begin(), modifierNames.end(),
                                               [&name](const Modifier& known) { return known.name == name; });
        if (found == modifierNames.end()) {
            return std::nullopt;
        }
        read.modifiers |= found->bit;
        written.remove_prefix(end + 1);
    }
    if (written.empty() || written.find_first_of("<> ") != std::string_view::npos) {
        return std::nullopt;
    }
    read.symbol = written;
    return read;
}

bool operator==(const Accelerator& first, const Accelerator& second) {
    return first.modifiers == second.modifiers && lowered(first.symbol) == lowered(second.symbol);
}

std::string Accelerator::written() const {
    std::string text;
    for (const Modifier& modifier : modifierNames) {
        if (modifier.isCustomary && (modifiers & modifier.bit) != 0) {
            text += '<' + capitalised(modifier.name) + '>';
        }
    }
    return text + symbol;
}

std::string Accelerator::words() const {
    std::string text;
    for (const Modifier& modifier : modifierNames) {
        if (modifier.isCustomary && (modifiers & modifier.bit) != 0) {
            text += modifier.word;
        }
    }
    return text + capitalised(symbol);
}

} // namespace velloran::platform::gnome
