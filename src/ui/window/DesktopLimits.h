#pragma once

#include <QString>
#include <QStringList>
#include <QtQmlIntegration>

#include "platform/Desktop.h"
#include "platform/HotKeys.h"

#include <optional>

namespace velloran {

/// What does not work on this desktop, or otherwise than it was asked for: for each part a sentence for the user, which
/// is empty where it does work; what can be done about it, and how everything works.
class DesktopLimits {
    Q_GADGET
    QML_VALUE_TYPE(desktopLimits)
    Q_PROPERTY(QString clicks MEMBER clicks)
    Q_PROPERTY(QString hotkey MEMBER hotkey)
    Q_PROPERTY(QString stillMouse MEMBER stillMouse)
    /// What to do without a hotkey: a sentence, and the line that it is about. Empty where there is one.
    Q_PROPERTY(QString hotkeyAdvice MEMBER hotkeyAdvice)
    Q_PROPERTY(QString hotkeyLine MEMBER hotkeyLine)
    /// How clicks, their permission, the hotkey and the still-mouse rule work here, or why they do not: a sentence
    /// each, a second one on what is to be done without, and one on the hotkey that is wanted where there is something
    /// to say.
    Q_PROPERTY(QStringList sentences MEMBER sentences)

public:
    /// `answer` is what the desktop has said to the hotkey that is wanted, if it has.
    static DesktopLimits of(const platform::Desktop& desktop,
                            const std::optional<platform::HotKeyAnswer>& answer = std::nullopt) {
        DesktopLimits limits{.clicks = QString::fromStdString(desktop.clicks.limit),
                             .hotkey = QString::fromStdString(desktop.hotKeys.limit),
                             .stillMouse = QString::fromStdString(desktop.pointer.limit),
                             .hotkeyAdvice = {},
                             .hotkeyLine = {},
                             .sentences = {}};
        const QString told = desktop.hotKeys.part && answer ? sentenceOf(*answer) : QString();
        if (!told.isEmpty()) {
            limits.hotkey = limits.hotkey.isEmpty() ? told : limits.hotkey + u' ' + told;
        }
        if (!desktop.hotKeys.part || (answer && isMissing(*answer))) {
            limits.advise(desktop.hotkeyAdvice);
        }
        limits.sentences = QStringList{sentenceOf(desktop.clicks), sentenceOf(desktop.trust),
                                       sentenceOf(desktop.hotKeys), told, sentenceOf(desktop.pointer)};
        limits.sentences.removeAll(QString());
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
    void advise(const platform::HotkeyAdvice& advice) {
        hotkeyLine = QString::fromStdString(advice.line);
        const QString place = QString::fromStdString(advice.place);
        if (!place.isEmpty()) {
            hotkeyAdvice = QStringLiteral("For a key of your choice, put this into %1:").arg(place);
        } else if (!hotkeyLine.isEmpty()) {
            hotkeyAdvice = QStringLiteral("A key of the desktop's own can be bound to this command:");
        }
        if (!hotkeyAdvice.isEmpty()) {
            hotkey += QStringLiteral(" %1 %2").arg(hotkeyAdvice, hotkeyLine);
        }
    }

    /// Whether nothing that is pressed starts the program.
    static bool isMissing(const platform::HotKeyAnswer& answer) {
        return answer.status != platform::noErr || answer.hasNoTrigger;
    }

    /// Nothing where the desktop does as it was asked.
    static QString sentenceOf(const platform::HotKeyAnswer& answer) {
        if (answer.status == platform::hotKeyExistsError && !answer.holder.empty()) {
            return QStringLiteral("The hotkey is taken on this desktop by %1.")
                .arg(QString::fromStdString(answer.holder));
        }
        if (answer.status == platform::hotKeyExistsError) {
            return QStringLiteral("The hotkey is taken: it does something else on this desktop.");
        }
        if (answer.status != platform::noErr && !answer.reason.empty()) {
            return QString::fromStdString(answer.reason);
        }
        if (answer.status != platform::noErr) {
            return QStringLiteral("This desktop did not give the program its hotkey.");
        }
        if (answer.hasNoTrigger) {
            return QStringLiteral("This desktop knows the hotkey, but has no key for it: choose one in its settings.");
        }
        return answer.otherTrigger.empty()
                   ? QString()
                   : QStringLiteral("The hotkey on this desktop is: ") + QString::fromStdString(answer.otherTrigger);
    }

    template<typename Interface>
    static QString sentenceOf(const platform::DesktopPart<Interface>& part) {
        const bool isBoth = !part.reason.empty() && !part.limit.empty() && part.reason != part.limit;
        return QString::fromStdString(isBoth ? part.reason + ' ' + part.limit
                                             : (part.limit.empty() ? part.reason : part.limit));
    }
};

} // namespace velloran
