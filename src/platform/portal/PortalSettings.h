#pragma once

#include "platform/portal/Portal.h"

#include <QDBusVariant>
#include <QHash>
#include <QString>
#include <QVariant>

#include "async/Published.h"
#include "platform/DesktopWishes.h"

namespace velloran::platform::portal {

/// What the desktop's settings portal tells of its user's wishes: once as soon as it answers, and again with each
/// change and whenever the portal or the bus starts anew. Never waits; a portal that is absent or silent tells nothing.
/// Main thread.
class PortalSettings final : public QObject {
    Q_OBJECT

public:
    /// `portal` has to outlive this.
    explicit PortalSettings(Portal& portal);

    /// As far as they are known.
    [[nodiscard]] const Published<DesktopWishes>& wishes() const { return wishes_; }

private slots:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value,
                        const QDBusMessage& message);

private:
    void ask();
    void take(const QString& group, const QString& key, const QVariant& value);
    void workOut();

    Portal& portal_;
    /// What was told of the settings that count, by group and key.
    QHash<QString, QVariant> told_;
    Published<DesktopWishes> wishes_{{}};
};

} // namespace velloran::platform::portal
