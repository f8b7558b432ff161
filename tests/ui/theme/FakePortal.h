#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace velloran::tests {

/// The settings of a desktop, by group and key.
using SettingGroups = QMap<QString, QVariantMap>;

/// The settings portal of a desktop, on a connection of its own.
class FakePortal : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    enum class Manner { answers, staysSilent };

    explicit FakePortal(SettingGroups settings, Manner manner = Manner::answers);
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;
    ~FakePortal() override;

    /// Changes a setting and tells everybody.
    void change(const QString& group, const QString& key, const QVariant& value);

    [[nodiscard]] int questionCount() const { return questionCount_; }

public slots:
    // The name is the interface's own.
    velloran::tests::SettingGroups ReadAll(const QStringList& groups);

signals:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void asked();

private:
    QDBusConnection bus_;
    SettingGroups settings_;
    Manner manner_;
    int questionCount_ = 0;
};

} // namespace velloran::tests
