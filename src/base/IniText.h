#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloran {

/// The text of an INI file, as lines. Entries are those of the section "General" and those in front of any section.
/// Where no section has that name it may have been damaged: then entries called "velloran." or "donation." something
/// are found in every section, and the next change puts them into one of that name. Every other line that is not an
/// entry being changed stays as it is: comments, other sections, and what nobody can read.
class IniText {
public:
    /// Any bytes will do.
    explicit IniText(std::string_view text);

    /// The text behind the equals sign, without the blanks around it. Of several entries the last one counts.
    [[nodiscard]] std::optional<std::string_view> value(std::string_view key) const;

    /// Changes the entry, or adds it. `value` is one line.
    void setValue(std::string_view key, std::string_view value);

    /// Takes the entry out, if there is one.
    void remove(std::string_view key);

    /// The whole text.
    [[nodiscard]] std::string text() const;

private:
    struct Line {
        std::string text;
        /// Where the equals sign is; only in entries.
        std::optional<std::size_t> equals;
        /// An entry in another section.
        bool isElsewhere = false;
    };

    void bringHome();

    static bool isEntry(const Line& line, std::string_view writtenKey);

    std::vector<Line> lines_;
    /// Where a new entry goes; nothing while there is no section for it.
    std::optional<std::size_t> end_;
};

} // namespace velloran
