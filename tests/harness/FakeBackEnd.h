#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>

#include "platform/portal/Shortcut.h"

#include <string>

namespace velloran::tests {

/// Stands behind the real portal, in place of a desktop: it shows nothing, grants the pointer and binds shortcuts or
/// not as a test says, and writes down which buttons were pressed.
class FakeBackEnd : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// Its place on the bus.
    static constexpr auto name = "org.freedesktop.impl.portal.desktop.velloran";

    enum class Manner {
        grants,
        refuses,
        fails,
        /// Takes the question and does not answer.
        hangs,
        /// Grants when a test says so, as a user who takes time.
        isSlow,
    };

    /// Takes its place on the bus at that address.
    explicit FakeBackEnd(const std::string& busAddress);
    FakeBackEnd(const FakeBackEnd&) = delete;
    FakeBackEnd& operator=(const FakeBackEnd&) = delete;
    ~FakeBackEnd() override;

    /// Grants what is waited for.
    void grantNow();

    /// Closes the session, as a user who takes the permission back.
    void closeSession();

    /// Presses the shortcut that was bound last, and lets it go.
    void pressShortcut();

    /// Gives it another key, or none of that name any more.
    void changeShortcut(const QString& words);
    void removeShortcut();

    /// Closes its session.
    void closeShortcut();

    Manner manner = Manner::grants;
    /// The names of those who opened a session, as the portal knows them.
    QStringList programs;
    /// Of the last session: what was asked for, whether it was granted once before, and whether it is still open.
    QVariantMap options;
    bool isRestored = false;
    bool isOpen = false;
    /// How often there would have been a dialog, and how often one was taken away again.
    int dialogs = 0;
    int withdrawn = 0;
    /// What was done to buttons: "272 down".
    QStringList buttons;
    /// The same in sessions that are not open any more, where no desktop takes it.
    QStringList ignored;
    /// How it tells that it has bound a shortcut.
    enum class Binding {
        told,
        /// It says that it failed, with the shortcut or without.
        saidToFail,
        saidToFailWithoutAWord,
        /// It says that it did, and not what.
        unsaid,
        /// It says that it did, and has bound nothing.
        none,
    };
    Binding binding = Binding::told;
    /// What has to be pressed in its words, where that is not what it is asked for.
    QString otherTrigger;
    /// What it was asked for last, whether it has that, and whether its session is still open.
    platform::portal::Shortcut shortcut;
    bool isShortcutBound = false;
    bool isShortcutOpen = false;
    /// How often it was asked for one.
    int bindings = 0;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    bool handleShortcuts(const QDBusMessage& message);
    void start(const QDBusMessage& message);
    void grant(const QDBusMessage& message);
    void takeButton(const QDBusMessage& message);
    void bind(const QDBusMessage& message);
    [[nodiscard]] QVariantMap boundShortcuts() const;
    void tellOfShortcuts(const QString& signal, const QVariantList& arguments);
    void answer(const QDBusMessage& message, uint response, const QVariantMap& results = {});

    QDBusConnection bus_;
    QDBusMessage waiting_;
    QString session_;
    QString shortcutSession_;
};

} // namespace velloran::tests
