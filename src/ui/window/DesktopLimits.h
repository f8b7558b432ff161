#pragma once

#include <QString>
#include <QStringList>
#include <QtQmlIntegration>

#include "platform/Desktop.h"

namespace velloran {

/// What does not work on this desktop: for each part a sentence for the user, which is empty where it does work; what
/// can be done about it, and how the rest works.
class DesktopLimits {
    Q_GADGET
    QML_VALUE_TYPE(desktopLimits)
    Q_PROPERTY(QString clicks MEMBER clicks)
    Q_PROPERTY(QString hotkey MEMBER hotkey)
    Q_PROPERTY(QString stillMouse MEMBER stillMouse)
    /// What to do without a hotkey: a sentence, and the line that it is about. Empty where there is one.
    Q_PROPERTY(QString hotkeyAdvice MEMBER hotkeyAdvice)
    Q_PROPERTY(QString hotkeyLine MEMBER hotkeyLine)
    /// How each part works here, or why it does not. None where everything works.
    Q_PROPERTY(QStringList sentences MEMBER sentences)

public:
    static DesktopLimits of(const platform::Desktop& desktop) {
        DesktopLimits limits{.clicks = QString::fromStdString(desktop.clicks.limit),
                             .hotkey = QString::fromStdString(desktop.hotKeys.limit),
                             .stillMouse = QString::fromStdString(desktop.pointer.limit),
                             .hotkeyAdvice = {},
                             .hotkeyLine = QString::fromStdString(desktop.hotkeyAdvice.line),
                             .sentences = {}};
        const QString place = QString::fromStdString(desktop.hotkeyAdvice.place);
        if (!place.isEmpty()) {
            limits.hotkeyAdvice = QStringLiteral("For a key of your choice, put this into %1:").arg(place);
            limits.hotkey += QStringLiteral(" %1 %2").arg(limits.hotkeyAdvice, limits.hotkeyLine);
        } else if (!limits.hotkeyLine.isEmpty()) {
            limits.hotkeyAdvice = QStringLiteral("A key of the desktop's own can be bound to this command:");
        }
        if (!limits.clicks.isEmpty() || !limits.hotkey.isEmpty() || !limits.stillMouse.isEmpty()) {
            limits.sentences = QStringList{sentenceOf(desktop.clicks), sentenceOf(desktop.trust),
                                           sentenceOf(desktop.hotKeys), sentenceOf(desktop.pointer)};
            limits.sentences.removeAll(QString());
        }
        return limits;
    }

    QString clicks;
    QString hotkey;
    QString stillMouse;
    QString hotkeyAdvice;
    QString hotkeyLine;
    QStringList sentences;

    bool operator==(const DesktopLimits&) const = default;

private:
    template<typename Interface>
    static QString sentenceOf(const platform::DesktopPart<Interface>& part) {
        return QString::fromStdString(part.limit.empty() ? part.reason : part.limit);
    }
};

} // namespace velloran
