#include "platform/portal/shortcutTrigger.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

#include "keys/KeyCodes.h"
#include "platform/HotKeys.h"

#include <array>
#include <utility>

namespace velloran::platform::portal {

namespace {

/// The parts of a combination, in one order and with one word for each modifier.
QStringList partsOf(const QString& words) {
    static const QHash<QString, QString> synonyms{
        {QStringLiteral("control"), QStringLiteral("ctrl")}, {QStringLiteral("primary"), QStringLiteral("ctrl")},
        {QStringLiteral("mod1"), QStringLiteral("alt")},     {QStringLiteral("super"), QStringLiteral("logo")},
        {QStringLiteral("meta"), QStringLiteral("logo")},    {QStringLiteral("mod4"), QStringLiteral("logo")},
    };
    static const QRegularExpression separators(QStringLiteral("\\W+"), QRegularExpression::UseUnicodePropertiesOption);
    QStringList parts = words.toLower().split(separators, Qt::SkipEmptyParts);
    // "Press <Control>F8"
    if (!parts.isEmpty() && parts.first() == QLatin1String("press")) {
        parts.removeFirst();
    }
    for (QString& part : parts) {
        part = synonyms.value(part, part);
    }
    parts.sort();
    return parts;
}

} // namespace

QString triggerOf(std::uint32_t keyCode, std::uint32_t modifiers, const keys::KeyboardLayout& layout) {
    constexpr std::array<std::pair<std::uint32_t, const char*>, 4> names{
        {{controlModifier, "CTRL+"}, {optionModifier, "ALT+"}, {shiftModifier, "SHIFT+"}, {commandModifier, "LOGO+"}}};
    const auto evdevCode = keys::evdevFromVirtualKey(keyCode);
    const std::string symbol = evdevCode ? layout.symbolName(*evdevCode) : std::string();
    if (symbol.empty()) {
        return {};
    }
    QString trigger;
    for (const auto& [bit, name] : names) {
        if ((modifiers & bit) != 0) {
            trigger += QLatin1String(name);
        }
    }
    return trigger + QString::fromStdString(symbol);
}

QString identifierOf(const QString& trigger) {
    return QStringLiteral("toggle-") + QString(trigger).replace(u'+', u'-').toLower();
}

bool saysTrigger(const QString& words, const QString& trigger) {
    return partsOf(words) == partsOf(trigger);
}

} // namespace velloran::platform::portal
