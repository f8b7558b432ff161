#include "ui/window/WindowButtonLayout.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>

namespace velloran {

namespace {

constexpr std::array allButtons{WindowButton::minimize, WindowButton::maximize, WindowButton::close};

std::optional<WindowButton> buttonNamed(const QString& name) {
    const auto* found = std::find_if(allButtons.begin(), allButtons.end(),
                                     [&name](WindowButton button) { return nameOf(button) == name; });
    return found != allButtons.end() ? std::optional(*found) : std::nullopt;
}

std::optional<WindowButton> buttonLettered(QChar letter) {
    switch (letter.unicode()) {
    case u'I':
        return WindowButton::minimize;
    case u'A':
        return WindowButton::maximize;
    case u'X':
        return WindowButton::close;
    default:
        return std::nullopt;
    }
}

bool contains(const std::vector<WindowButton>& buttons, WindowButton button) {
    return std::find(buttons.begin(), buttons.end(), button) != buttons.end();
}

/// Adds a button to one side unless the layout has it already.
void place(WindowButtonLayout& layout, std::vector<WindowButton>& side, std::optional<WindowButton> button) {
    if (button && !contains(layout.left, *button) && !contains(layout.right, *button)) {
        side.push_back(*button);
    }
}

} // namespace

WindowButtonLayout WindowButtonLayout::standard() {
    return {{}, {WindowButton::minimize, WindowButton::maximize, WindowButton::close}};
}

WindowButtonLayout WindowButtonLayout::fromNames(const QString& setting) {
    WindowButtonLayout layout;
    const QStringList sides = setting.split(u':');
    for (const QString& name : sides.at(0).split(u',')) {
        place(layout, layout.left, buttonNamed(name.trimmed()));
    }
    if (sides.size() > 1) {
        for (const QString& name : sides.at(1).split(u',')) {
            place(layout, layout.right, buttonNamed(name.trimmed()));
        }
    }
    return layout;
}

WindowButtonLayout WindowButtonLayout::fromLetters(const QString& left, const QString& right) {
    WindowButtonLayout layout;
    for (const QChar letter : left) {
        place(layout, layout.left, buttonLettered(letter));
    }
    for (const QChar letter : right) {
        place(layout, layout.right, buttonLettered(letter));
    }
    return layout;
}

QString nameOf(WindowButton button) {
    switch (button) {
    case WindowButton::minimize:
        return QStringLiteral("minimize");
    case WindowButton::maximize:
        return QStringLiteral("maximize");
    case WindowButton::close:
        return QStringLiteral("close");
    }
    return {};
}

} // namespace velloran
