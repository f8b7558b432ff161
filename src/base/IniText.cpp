#include "base/IniText.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace velloran {

namespace {

constexpr std::string_view header = "[General]";

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

bool isSection(std::string_view line) {
    return withoutBlanks(line).starts_with('[');
}

bool isNamedAsOurs(std::string_view entry) {
    return entry.starts_with("velloran.") || entry.starts_with("donation.");
}

bool isHeader(std::string_view line) {
    return std::equal(line.begin(), line.end(), header.begin(), header.end(),
                      [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
}

/// A key in the characters that keys are written with; every other byte as a percent sign and two hexadecimal digits.
std::string writtenForm(std::string_view key) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string written;
    for (const char character : key) {
        const auto code = static_cast<unsigned char>(character);
        const bool isPlain =
            code < 0x80 && (std::isalnum(code) != 0 || character == '_' || character == '-' || character == '.');
        if (isPlain) {
            written += character;
        } else {
            written += '%';
            written += digits[code >> 4U];
            written += digits[code & 0xFU];
        }
    }
    return written;
}

} // namespace

IniText::IniText(std::string_view text) {
    bool isInSection = true;
    while (!text.empty()) {
        const std::size_t lineEnd = text.find('\n');
        Line line{std::string(text.substr(0, lineEnd)), std::nullopt, !isInSection};
        text.remove_prefix(lineEnd == std::string_view::npos ? text.size() : lineEnd + 1);
        const std::string_view content = withoutBlanks(line.text);
        if (isSection(content)) {
            isInSection = isHeader(content);
            if (isInSection) {
                end_ = lines_.size() + 1;
            }
        } else if ((isInSection || isNamedAsOurs(content)) && !content.starts_with(';') && !content.starts_with('#')) {
            const std::size_t equals = line.text.find('=');
            if (equals != std::string::npos) {
                line.equals = equals;
                if (end_ && isInSection) {
                    end_ = lines_.size() + 1;
                }
            }
        }
        line.isElsewhere = line.equals && line.isElsewhere;
        lines_.push_back(std::move(line));
    }
    if (end_) {
        for (Line& line : lines_) {
            if (line.isElsewhere) {
                line = {std::move(line.text), std::nullopt, false};
            }
        }
    }
}

std::optional<std::string_view> IniText::value(std::string_view key) const {
    const std::string written = writtenForm(key);
    const auto last =
        std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) { return isEntry(line, written); });
    if (last == lines_.rend()) {
        return std::nullopt;
    }
    return withoutBlanks(std::string_view(last->text).substr(*last->equals + 1));
}

void IniText::setValue(std::string_view key, std::string_view value) {
    const std::string written = writtenForm(key);
    Line entry{written + '=' + std::string(value), written.size(), false};
    bringHome();
    const auto last =
        std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) { return isEntry(line, written); });
    if (last != lines_.rend()) {
        *last = std::move(entry);
        return;
    }
    if (!end_) {
        // In front of everything, where entries without a section belong to it too.
        lines_.insert(lines_.begin(), Line{std::string(header), std::nullopt, false});
        end_ = 1;
    }
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(*end_), std::move(entry));
    ++*end_;
}

void IniText::remove(std::string_view key) {
    bringHome();
    const std::string written = writtenForm(key);
    for (std::size_t at = lines_.size(); at-- > 0;) {
        if (!isEntry(lines_[at], written)) {
            continue;
        }
        lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(at));
        if (end_ && at < *end_) {
            --*end_;
        }
    }
}

/// They follow those that are in front of any section, so that of several the last one counts as before.
void IniText::bringHome() {
    const auto isElsewhere = [](const Line& line) { return line.isElsewhere; };
    if (std::none_of(lines_.begin(), lines_.end(), isElsewhere)) {
        return;
    }
    const auto firstSection =
        std::find_if(lines_.begin(), lines_.end(), [](const Line& line) { return isSection(line.text); });
    const auto behind = std::stable_partition(firstSection, lines_.end(), isElsewhere);
    std::for_each(firstSection, behind, [](Line& line) { line.isElsewhere = false; });
    end_ = static_cast<std::size_t>(behind - lines_.begin()) + 1;
    lines_.insert(lines_.begin(), Line{std::string(header), std::nullopt, false});
}

std::string IniText::text() const {
    std::string all;
    for (const Line& line : lines_) {
        all += line.text;
        all += '\n';
    }
    return all;
}

bool IniText::isEntry(const Line& line, std::string_view writtenKey) {
    return line.equals && withoutBlanks(std::string_view(line.text).substr(0, *line.equals)) == writtenKey;
}

} // namespace velloran
