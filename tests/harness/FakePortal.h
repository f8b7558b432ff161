#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <string>

namespace velloran::tests {

/// The settings of a desktop, by group and key.
using SettingGroups = QMap<QString, QVariantMap>;

/// What a program asked the portal for.
struct FileRequest {
    /// "OpenFile" or "SaveFile"; empty when nothing was asked.
    QString method;
    QString parentWindow;
    QString title;
    QVariantMap options;
    QString path;
};

/// Stands for the desktop's portal on a message bus: it shows nothing, and answers when a test says so.
class FakePortal : public QObject {
    Q_OBJECT

public:
    /// Takes the portal's place on the bus at that address.
    explicit FakePortal(const std::string& busAddress);
    ~FakePortal() override;

    /// Ends the last request as the user would: 0 for a choice, 1 for none.
    void respond(uint response, const QStringList& uris = {});

    /// Tells everybody that the window buttons have changed.
    void changeButtonLayout(const QString& layout);

    /// Goes away without an answer.
    void vanish();

    /// The window buttons that it tells; empty when it knows of none.
    QString buttonLayout;
    FileRequest request;
    int requests = 0;
    /// Whether requests come back under another path than the caller expects, as from portals of old.
    bool usesOwnPaths = false;
    int closed = 0;

private:
    QDBusConnection bus_;
};

/// The settings of the portal.
class FakeSettings : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit FakeSettings(FakePortal& portal) : QDBusAbstractAdaptor(&portal), portal_(portal) {}

public slots:
    // The name is the interface's own.
    velloran::tests::SettingGroups ReadAll(const QStringList& groups);

signals:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    FakePortal& portal_;
};

/// The file dialogs of the portal.
class FakeFileChooser : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")
    Q_PROPERTY(uint version READ version CONSTANT)

public:
    explicit FakeFileChooser(FakePortal& portal) : QDBusAbstractAdaptor(&portal), portal_(portal) {}

    [[nodiscard]] uint version() const { return 3; }

public slots:
    QDBusObjectPath OpenFile(const QString& parentWindow, const QString& title, const QVariantMap& options,
                             const QDBusMessage& message);
    QDBusObjectPath SaveFile(const QString& parentWindow, const QString& title, const QVariantMap& options,
                             const QDBusMessage& message);

private:
    QDBusObjectPath take(const QString& method, const QString& parentWindow, const QString& title,
                         const QVariantMap& options, const QDBusMessage& message);

    FakePortal& portal_;
};

} // namespace velloran::tests
