#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>

#include <string>

namespace velloran::tests {

/// Stands behind the real portal, in place of a desktop: it shows nothing, grants the pointer or not as a test says,
/// and writes down which buttons were pressed.
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
    };

    /// Takes its place on the bus at that address.
    explicit FakeBackEnd(const std::string& busAddress);
    FakeBackEnd(const FakeBackEnd&) = delete;
    FakeBackEnd& operator=(const FakeBackEnd&) = delete;
    ~FakeBackEnd() override;

    /// Closes the session, as a user who takes the permission back.
    void closeSession();

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

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    void start(const QDBusMessage& message);
    void answer(const QDBusMessage& message, uint response, const QVariantMap& results = {});

    QDBusConnection bus_;
    QString session_;
};

} // namespace velloran::tests
