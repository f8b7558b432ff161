#pragma once

#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace velloran {

/// What the desktop's settings portal tells about some groups of its settings: once as soon as it answers, and again
/// with each change and whenever the portal or the bus starts anew. Never waits; a portal that is absent or silent
/// tells nothing.
class DesktopSettings final : public QObject {
    Q_OBJECT

public:
    explicit DesktopSettings(QStringList groups, QObject* parent = nullptr);

signals:
    /// A setting has this value. Several of them that came together are followed by one `upToDate`.
    void told(const QString& group, const QString& key, const QVariant& value);
    void upToDate();

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void listen();
    void ask();
    void tell(const QString& group, const QString& key, const QVariant& value);

    QStringList groups_;
    std::unique_ptr<QDBusServiceWatcher> portalLife_;
};

} // namespace velloran
