#pragma once

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QList>
#include <QString>
#include <QVariantMap>

namespace velloran::platform::portal {

/// A shortcut as the portal and programs tell each other of it.
struct Shortcut {
    QString identifier;
    QVariantMap properties;
};

using ShortcutList = QList<Shortcut>;

inline QDBusArgument& operator<<(QDBusArgument& argument, const Shortcut& shortcut) {
    argument.beginStructure();
    argument << shortcut.identifier << shortcut.properties;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, Shortcut& shortcut) {
    argument.beginStructure();
    argument >> shortcut.identifier >> shortcut.properties;
    argument.endStructure();
    return argument;
}

/// Makes them known to the toolkit, before the first is sent.
inline void registerShortcuts() {
    qDBusRegisterMetaType<Shortcut>();
    qDBusRegisterMetaType<ShortcutList>();
}

/// The shortcuts in a value that came over the bus; none in one of any other kind.
inline ShortcutList shortcutsIn(const QVariant& value) {
    const auto argument = value.value<QDBusArgument>();
    return argument.currentSignature() == QLatin1String("a(sa{sv})") ? qdbus_cast<ShortcutList>(argument)
                                                                     : ShortcutList();
}

} // namespace velloran::platform::portal
