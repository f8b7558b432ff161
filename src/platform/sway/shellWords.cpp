#include "platform/sway/shellWords.h"

#include <cctype>
#include <cstddef>
#include <utility>

namespace velloran::platform::sway {

namespace {

/// Longer than any list of names of files.
constexpr std::size_t longestExpansion = std::size_t{1} << 16U;
constexpr int deepestNesting = 16;

bool isOneOf(char character, std::string_view characters) {
    return characters.find(character) != std::string_view::npos;
}

bool beginsName(char character) {
    return std::isalpha(static_cast<unsigned char>(character)) != 0 || character == '_';
}

bool isOfName(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

void appendLiteral(std::string& pattern, char character) {
    if (isOneOf(character, "\\*?[]-!^")) {
        pattern += '\\';
    }
    pattern += character;
}

class Expansion {
public:
    Expansion(std::string_view line, const Variables& variables) : rest_(line), variables_(variables) {}

    std::optional<std::vector<ShellWord>> words() {
        const bool canStand = rest_.find('\0') == std::string_view::npos;
        if (!canStand || !read(End::ofLine, false) || length_ > longestExpansion) {
            return std::nullopt;
        }
        endWord();
        return std::move(words_);
    }

private:
    enum class End { ofLine, atQuote, atBrace };

    /// What of it is to be left out is read all the same, as its end has to be found. False where it is no line.
    bool read(End end, bool isQuoted) {
        while (!rest_.empty()) {
            const char character = take();
            if ((end == End::atQuote && character == '"') || (end == End::atBrace && character == '}')) {
                return true;
            }
            if (!readOne(character, isQuoted)) {
                return false;
            }
        }
        return end == End::ofLine;
    }

    bool readOne(char character, bool isQuoted) {
        switch (character) {
        case '`':
            return false;
        case '$':
            return readValue(isQuoted);
        case '\\':
            return readEscaped(isQuoted);
        case '"':
            beginWord();
            return read(End::atQuote, true);
        default:
            break;
        }
        if (isQuoted) {
            add(character, true);
            return true;
        }
        return readBare(character);
    }

    bool readBare(char character) {
        if (isOneOf(character, " \t")) {
            endWord();
            return true;
        }
        if (character == '\'') {
            return readSingleQuoted();
        }
        if (character == '~' && !word_) {
            return readHome();
        }
        add(character, false);
        return !isOneOf(character, "\n|&;<>(){}");
    }

    bool readSingleQuoted() {
        const std::size_t end = rest_.find('\'');
        if (end == std::string_view::npos) {
            return false;
        }
        beginWord();
        addAll(takeFirst(end), true);
        take();
        return true;
    }

    bool readEscaped(bool isQuoted) {
        if (rest_.empty()) {
            return false;
        }
        if (isQuoted && !isOneOf(rest_.front(), "$`\"\\\n}")) {
            add('\\', true);
            return true;
        }
        const char escaped = take();
        if (escaped != '\n') {
            add(escaped, true);
        }
        return true;
    }

    /// Behind a `~` that begins a word.
    bool readHome() {
        std::size_t length = 0;
        while (length < rest_.size() && (isOfName(rest_[length]) || isOneOf(rest_[length], "-."))) {
            ++length;
        }
        const std::string user(rest_.substr(0, length));
        const bool isWhole = length == rest_.size() || isOneOf(rest_[length], "/ \t}");
        if (!isWhole || (!user.empty() && valueOf("USER") != user && valueOf("LOGNAME") != user)) {
            add('~', true);
            return true;
        }
        takeFirst(length);
        const auto home = valueOf("HOME");
        addAll(home.value_or(""), true);
        return home.has_value();
    }

    /// Behind a `$`.
    bool readValue(bool isQuoted) {
        const char next = rest_.empty() ? ' ' : rest_.front();
        if (next == '{') {
            take();
            return readBraces(isQuoted);
        }
        if (beginsName(next)) {
            addValue(valueOf(takeName()).value_or(""), isQuoted);
            return true;
        }
        add('$', true);
        return !isOfName(next) && !isOneOf(next, "([*@#?-$!");
    }

    bool readBraces(bool isQuoted) {
        if (rest_.empty() || !beginsName(rest_.front())) {
            return false;
        }
        auto value = valueOf(takeName());
        if (rest_.starts_with('}')) {
            take();
            addValue(value.value_or(""), isQuoted);
            return true;
        }
        if (rest_.starts_with(':')) {
            take();
            value = value == "" ? std::nullopt : value;
        }
        const char choice = rest_.empty() ? '\0' : take();
        const bool isInstead = choice == '+';
        if (!isOneOf(choice, "-=+?") || (choice == '?' && !value)) {
            return false;
        }
        if (value && !isInstead) {
            addValue(*value, isQuoted);
        }
        return readAlternative(isQuoted, value.has_value() == isInstead);
    }

    bool readAlternative(bool isQuoted, bool isUsed) {
        const bool isLeftOut = std::exchange(isLeftOut_, isLeftOut_ || !isUsed);
        const bool isRead = ++depth_ <= deepestNesting && read(End::atBrace, isQuoted);
        --depth_;
        isLeftOut_ = isLeftOut;
        return isRead;
    }

    [[nodiscard]] std::optional<std::string> valueOf(const std::string& name) const {
        const auto found = variables_.find(name);
        return found != variables_.end() ? std::optional(found->second) : std::nullopt;
    }

    char take() { return takeFirst(1).front(); }

    std::string_view takeFirst(std::size_t length) {
        const std::string_view first = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return first;
    }

    std::string takeName() {
        std::size_t length = 0;
        while (length < rest_.size() && isOfName(rest_[length])) {
            ++length;
        }
        return std::string(takeFirst(length));
    }

    void beginWord() {
        if (!isLeftOut_ && !word_) {
            word_.emplace();
        }
    }

    void endWord() {
        if (!isLeftOut_ && word_) {
            words_.push_back(*std::exchange(word_, std::nullopt));
        }
    }

    void add(char character, bool isLiteral) {
        if (isLeftOut_ || ++length_ > longestExpansion) {
            return;
        }
        beginWord();
        word_->text += character;
        if (isLiteral) {
            appendLiteral(word_->pattern, character);
        } else {
            word_->pattern += character;
        }
    }

    void addAll(std::string_view text, bool isLiteral) {
        for (const char character : text) {
            add(character, isLiteral);
        }
    }

    /// One that is not quoted may be several words, and stand for several files.
    void addValue(const std::string& value, bool isQuoted) {
        for (const char character : value) {
            if (!isQuoted && isOneOf(character, " \t\n")) {
                endWord();
            } else {
                add(character, isQuoted || character == '\\');
            }
        }
    }

    std::string_view rest_;
    const Variables& variables_;
    std::vector<ShellWord> words_;
    /// The one that is being read.
    std::optional<ShellWord> word_;
    /// Of all words together.
    std::size_t length_ = 0;
    int depth_ = 0;
    /// While what is read counts for nothing.
    bool isLeftOut_ = false;
};

} // namespace

std::string literalPattern(std::string_view text) {
    std::string pattern;
    for (const char character : text) {
        appendLiteral(pattern, character);
    }
    return pattern;
}

std::optional<std::vector<ShellWord>> expandShellWords(std::string_view line, const Variables& variables) {
    return Expansion(line, variables).words();
}

} // namespace velloran::platform::sway
