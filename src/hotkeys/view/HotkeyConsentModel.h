#pragma once

#include "platform/HotkeyConsent.h"
#include "platform/Preferences.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>

#include <memory>
#include <string>

namespace velloran {

/// Asks the user, in the window, for the consent to a hotkey among the user's own shortcuts. What was agreed to is
/// stored, and not asked for again until something else is. Main thread.
class HotkeyConsentModel : public QObject, public platform::HotkeyConsent {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY questionChanged FINAL)
    /// The shortcut that it is about, or was the last time.
    Q_PROPERTY(QString shortcut READ shortcut NOTIFY questionChanged FINAL)

public:
    /// `preferences` outlive this object.
    explicit HotkeyConsentModel(platform::Preferences& preferences, QObject* parent = nullptr);

    [[nodiscard]] Subscription ask(const std::string& shortcut, Answered answered) override;

    [[nodiscard]] bool isAsking() const { return question_ != nullptr; }

    [[nodiscard]] QString shortcut() const { return QString::fromStdString(shortcut_); }

    /// The user's answer. No effect while nothing is asked.
    Q_INVOKABLE void agree();

    Q_INVOKABLE void refuse() { answer(false); }

signals:
    void questionChanged();

private:
    void answer(bool agreed);

    platform::Preferences& preferences_;
    std::string shortcut_;
    /// Null while nothing is asked.
    std::shared_ptr<Answered> question_;
};

} // namespace velloran
