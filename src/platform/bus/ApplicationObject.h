#pragma once

#include <QDBusAbstractAdaptor>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace velloran::platform::bus {

/// The desktop's interface to a running application, as it stands on the session bus. Hands on what it is asked as
/// signals; what it does not know, and files to open, it leaves alone.
class ApplicationObject final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationObject(QObject* parent);

public slots:
    // The names are the interface's own.
    void Activate(const QVariantMap& platform_data);
    void Open(const QStringList& uris, const QVariantMap& platform_data);
    void ActivateAction(const QString& action_name, const QVariantList& parameter, const QVariantMap& platform_data);

signals:
    void activated(const QVariantMap& platformData);
    void actionActivated(const QString& name);
};

} // namespace velloran::platform::bus
