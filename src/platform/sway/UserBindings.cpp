#include "platform/sway/UserBindings.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

namespace velloran::platform::sway {

namespace {

/// Longer than anybody writes: variables that are made of each other could fill the memory.
constexpr std::size_t longestLine = 4096;
constexpr std::size_t mostFiles = 500;
constexpr std::size_t deepestBlock = 16;

using Words = std::vector<std::string>;

bool isBlank(char character) {
    return std::isspace(static_cast<unsigned char>(character)) != 0;
}

std::string_view stripped(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return text;
}

std::string unquoted(const std::string& word) {
    const bool isQuoted =
        word.size() >= 2 && (word.front() == '"' || word.front() == '\'') && word.back() == word.front();
    return isQuoted ? word.substr(1, word.size() - 2) : word;
}

/// Words with their quotes, which keep blanks together.
Words wordsOf(std::string_view line) {
    Words words;
    bool isInWord = false;
    char quote = '\0';
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char character = line[i];
        if (quote == '\0' && isBlank(character)) {
            isInWord = false;
            continue;
        }
        if (!std::exchange(isInWord, true)) {
            words.emplace_back();
        }
        words.back() += character;
        if (character == '\\' && i + 1 < line.size()) {
            words.back() += line[++i];
        } else if (quote == '\0' && (character == '"' || character == '\'')) {
            quote = character;
        } else if (character == quote) {
            quote = '\0';
        }
    }
    return words;
}

std::string joined(Words::const_iterator begin, Words::const_iterator end) {
    std::string text;
    for (auto word = begin; word != end; ++word) {
        text += (word == begin ? "" : " ") + *word;
    }
    return text;
}

std::optional<std::uint32_t> modifierNamed(const std::string& name) {
    constexpr std::array<std::pair<std::string_view, unsigned>, 12> names{{{"shift", 0},
                                                                           {"lock", 1},
                                                                           {"control", 2},
                                                                           {"ctrl", 2},
                                                                           {"mod1", 3},
                                                                           {"alt", 3},
                                                                           {"mod2", 4},
                                                                           {"mod3", 5},
                                                                           {"mod4", 6},
                                                                           {"super", 6},
                                                                           {"logo", 6},
                                                                           {"mod5", 7}}};
    const std::string wanted = lowered(name);
    const auto* const found =
        std::find_if(names.begin(), names.end(), [&](const auto& one) { return one.first == wanted; });
    return found != names.end() ? std::optional(1U << found->second) : std::nullopt;
}

bool isGroup(const std::string& name) {
    const std::string text = lowered(name);
    return text == "mode_switch" || (text.size() == 6 && text.starts_with("group"));
}

/// Nothing where it is no combination of modifiers and one key.
std::optional<UserBinding> combination(const std::string& text, bool isByCode) {
    UserBinding binding{.modifiers = 0, .key = {}, .isByCode = isByCode};
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, '+');) {
        if (const auto modifier = modifierNamed(part)) {
            binding.modifiers |= *modifier;
        } else if (!isGroup(part)) {
            if (!binding.key.empty() || part.empty()) {
                return std::nullopt;
            }
            binding.key = part;
        }
    }
    return binding.key.empty() ? std::nullopt : std::optional(binding);
}

class Reader {
public:
    explicit Reader(const FindIncluded& findIncluded) : findIncluded_(findIncluded) {}

    void read(const ConfigurationFile& file) {
        if (files_.size() >= mostFiles || !files_.insert(file.path).second) {
            return;
        }
        const std::string folder = file.path.substr(0, file.path.find_last_of('/') + 1);
        std::vector<std::string> blocks;
        std::string before;
        std::istringstream lines(file.text);
        for (std::string whole; std::getline(lines, whole);) {
            for (std::string next; whole.ends_with('\\') && std::getline(lines, next);) {
                whole.pop_back();
                whole += next;
            }
            std::string_view line = stripped(whole);
            if (line.empty() || line.front() == '#' || line.size() > longestLine) {
                continue;
            }
            if (line == "}") {
                if (!blocks.empty()) {
                    blocks.pop_back();
                }
            } else if (line.back() == '{') {
                line = stripped(line.substr(0, line.size() - 1));
                if (blocks.size() == deepestBlock) {
                    return;
                }
                // The brace may stand on a line of its own.
                blocks.emplace_back(line.empty() ? before : line);
            } else {
                before = line;
                follow(joined(blocks.begin(), blocks.end()) + ' ' + before, folder);
            }
        }
    }

    std::vector<UserBinding> bindings;

private:
    void follow(const std::string& line, const std::string& folder) {
        Words words = wordsOf(line);
        if (words.size() > 1 && lowered(words[0]) == "mode") {
            auto name = words.begin() + 1;
            while (name != words.end() && name->starts_with("--")) {
                ++name;
            }
            if (name == words.end() || unquoted(*name) != "default") {
                return;
            }
            words.erase(words.begin(), name + 1);
        }
        if (words.size() < 2) {
            return;
        }
        const std::string command = lowered(words[0]);
        if (command == "set" && words[1].starts_with('$')) {
            variables_[words[1]] = filledIn(joined(words.begin() + 2, words.end()));
        } else if (command == "include" && words.size() == 2) {
            include(unquoted(filledIn(words[1])), folder);
        } else if (command == "bindsym" || command == "bindcode") {
            bind(words, command == "bindcode");
        } else if (command == "unbindsym" || command == "unbindcode") {
            unbind(words, command == "unbindcode");
        }
    }

    void include(const std::string& words, const std::string& folder) {
        for (const ConfigurationFile& file : findIncluded_(words, folder)) {
            read(file);
        }
    }

    [[nodiscard]] std::optional<UserBinding> combinationIn(const Words& words, bool isByCode,
                                                           std::size_t atLeastBehind) const {
        const auto found = std::find_if(words.begin() + 1, words.end(),
                                        [](const std::string& word) { return !word.starts_with("--"); });
        const bool isWhole = static_cast<std::size_t>(words.end() - found) > atLeastBehind;
        return isWhole ? combination(unquoted(filledIn(*found)), isByCode) : std::nullopt;
    }

    void bind(const Words& words, bool isByCode) {
        if (const auto bound = combinationIn(words, isByCode, 1)) {
            bindings.push_back(*bound);
        }
    }

    void unbind(const Words& words, bool isByCode) {
        if (const auto bound = combinationIn(words, isByCode, 0)) {
            std::erase(bindings, *bound);
        }
    }

    using Variables = std::map<std::string, std::string>;

    /// The variable that stands there, of several that fit the longest; null where there is none.
    [[nodiscard]] const Variables::value_type* variableAt(const std::string& text, std::size_t place) const {
        const Variables::value_type* longest = nullptr;
        for (const auto& variable : variables_) {
            const bool fits = text.compare(place, variable.first.size(), variable.first) == 0;
            if (fits && (longest == nullptr || variable.first.size() > longest->first.size())) {
                longest = &variable;
            }
        }
        return longest;
    }

    /// With the variables put in. Nothing where that grows beyond all measure.
    [[nodiscard]] std::string filledIn(const std::string& text) const {
        std::string result;
        for (std::size_t i = 0; i < text.size() && result.size() <= longestLine;) {
            const auto* const variable = text[i] == '$' ? variableAt(text, i) : nullptr;
            result += variable != nullptr ? variable->second : text.substr(i, 1);
            i += variable != nullptr ? variable->first.size() : 1;
        }
        return result.size() <= longestLine ? result : std::string();
    }

    const FindIncluded& findIncluded_;
    std::set<std::string> files_;
    Variables variables_;
};

} // namespace

std::vector<UserBinding> userBindings(const ConfigurationFile& main, const FindIncluded& findIncluded) {
    Reader reader(findIncluded);
    reader.read(main);
    return std::move(reader.bindings);
}

} // namespace velloran::platform::sway
