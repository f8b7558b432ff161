#pragma once

#include <QByteArray>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <string>

namespace velloran::tests {

/// The settings of a desktop, by group and key.
using SettingGroups = QMap<QString, QVariantMap>;

/// Stands for the desktop's portal on a message bus, on a connection of its own: it tells its settings, shows nothing,
/// and answers requests when a test says so.
class FakePortal : public QDBusVirtualObject {
    Q_OBJECT

public:
    enum class Manner {
        answers,
        /// Takes every question and answers none.
        staysSilent,
        /// Says that it is a portal, and takes requests without a word.
        hangs,
        /// Says that it is a portal, and answers requests with an error.
        refuses,
        /// Tells how a request ended before it has said that it took it.
        hurries,
    };

    /// What a program asked for.
    struct Request {
        /// Empty when nothing was asked.
        QString method;
        QVariantList arguments;
        QVariantMap options;
        QString path;
    };

    /// Takes the portal's place on the bus at that address.
    explicit FakePortal(const std::string& busAddress, SettingGroups settings = {}, Manner manner = Manner::answers);
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;
    ~FakePortal() override;

    /// Ends the last request as the user would: 0 for a grant, 1 for a refusal.
    void respond(uint response, const QVariantMap& results = {});

    /// The same for a question for files.
    void choose(const QString& uri) { respond(0, {{QStringLiteral("uris"), QStringList{uri}}}); }

    /// Closes a session.
    void closeSession(const QString& path);

    /// Tells of a shortcut of that session: "Activated" or "Deactivated".
    void tellOfShortcut(const QString& what, const QString& session, const QString& identifier);

    /// Tells of other shortcuts in that session.
    void changeShortcuts(const QString& session, const QVariant& shortcuts);

    /// Changes a setting and tells everybody.
    void change(const QString& group, const QString& key, const QVariant& value);

    /// Answers the buttons that it has taken and not answered, and from now on each at once.
    void letButtonsGo();

    /// Goes away without an answer.
    void vanish();

    /// The methods of what was called, one after another; for `Get`, what was asked for the version of.
    QStringList calls;
    /// What programs said that they are called.
    QStringList names;
    Request request;
    /// How many there were.
    int requests = 0;
    /// Paths of the requests and sessions that the program closed.
    QStringList closed;
    /// The version that it says of every interface; 0 for an error.
    uint version = 3;
    /// The interfaces that it has not.
    QStringList missing;
    /// Whether it takes names from programs; one of old knows of none.
    bool takesNames = true;
    /// What was done to buttons: "272 down".
    QStringList buttons;
    /// What becomes of buttons.
    enum class Buttons { taken, refused, held };
    Buttons buttonManner = Buttons::taken;
    /// Gives a connection for emulated input; the descriptor is closed then. Where it is not set, there are none.
    std::function<int()> makeInput;
    /// What it says to those who want such a connection, where it makes none.
    QDBusError::ErrorType inputError = QDBusError::NotSupported;
    /// What it says instead of taking a request.
    std::optional<QDBusError::ErrorType> requestError;
    /// Whether requests come back under another path than the caller expects, as from portals of old.
    bool usesOwnPaths = false;
    /// Whether it says of requests that it has taken them, and nothing of a path.
    bool namesNoPath = false;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    void answer(const QDBusMessage& message, const QVariantList& values);
    void takeRequest(const QDBusMessage& message);
    void takeButton(const QDBusMessage& message);
    void signal(const QString& path, const QString& interface, const QString& name, const QVariantList& arguments);

    QDBusConnection bus_;
    SettingGroups settings_;
    Manner manner_;
    QList<QDBusMessage> held_;
};

} // namespace velloran::tests
