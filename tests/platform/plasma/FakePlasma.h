#pragma once

#include "platform/plasma/KeySequence.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QMap>
#include <QStringList>
#include <QVariantList>

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace velloran::tests {

/// One service of Plasma's on a message bus, on a connection of its own: keeps what it is called with, and answers as a
/// test says.
class FakeService : public QDBusVirtualObject {
public:
    /// What it answers: nothing for an error.
    using Answers = std::function<std::optional<QVariantList>(const QString& method, const QVariantList& arguments)>;

    FakeService(const std::string& busAddress, QString name, Answers answers)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), nextConnectionName())),
          name_(std::move(name)),
          answers_(std::move(answers)) {
        bus_.registerVirtualObject("/", this, QDBusConnection::SubPath);
        bus_.registerService(name_);
    }

    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;

    ~FakeService() override {
        const QString name = bus_.name();
        bus_.unregisterObject("/", QDBusConnection::UnregisterTree);
        bus_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(name);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override {
        calls.append(message.member());
        paths.append(message.path());
        if (isSilent) {
            message.setDelayedReply(true);
            unanswered.append(message);
        } else {
            answer(message);
        }
        return true;
    }

    /// Answers what it has taken and not answered, and from now on each at once.
    void goOn() {
        isSilent = false;
        for (const QDBusMessage& message : std::exchange(unanswered, {})) {
            answer(message);
        }
    }

    void signal(const QString& path, const QString& interface, const QString& name, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createSignal(path, interface, name);
        message.setArguments(arguments);
        bus_.send(message);
    }

    [[nodiscard]] QDBusConnection& bus() { return bus_; }

    QStringList calls;
    QStringList paths;
    bool isSilent = false;
    QList<QDBusMessage> unanswered;

private:
    static QString nextConnectionName() {
        static int count = 0;
        return QStringLiteral("fake Plasma %1").arg(++count);
    }

    void answer(const QDBusMessage& message) {
        const auto values = answers_(message.member(), message.arguments());
        bus_.send(values ? message.createReply(*values)
                         : message.createErrorReply(QDBusError::UnknownObject, "not here"));
    }

    QDBusConnection bus_;
    const QString name_;
    const Answers answers_;
};

/// What Plasma tells of a shortcut.
struct ShortcutInfo {
    QStringList names;
    QList<int> keys;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const ShortcutInfo& info) {
    argument.beginStructure();
    for (int index = 0; index < 6; ++index) {
        argument << info.names.value(index);
    }
    argument << info.keys << QList<int>();
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, ShortcutInfo& /*info*/) {
    return argument;
}

/// Plasma's service for hot keys, as far as the program asks it: it keeps to what the real one does.
class FakeShortcuts {
public:
    explicit FakeShortcuts(const std::string& busAddress)
        : service(busAddress, "org.kde.kglobalaccel",
                  [this](const QString& method, const QVariantList& arguments) { return answer(method, arguments); }) {
        platform::plasma::registerKeySequences();
        qDBusRegisterMetaType<ShortcutInfo>();
        qDBusRegisterMetaType<QList<ShortcutInfo>>();
    }

    /// The keys of a shortcut of the program's; empty while it has none.
    [[nodiscard]] QList<int> keys(const QString& name = "toggle") const { return bound.value(name); }

    void press(const QString& name = "toggle") { tell("globalShortcutPressed", name); }

    void release(const QString& name = "toggle") { tell("globalShortcutReleased", name); }

    void tell(const QString& what, const QString& name) {
        service.signal("/component/app_velloran_Velloran", "org.kde.kglobalaccel.Component", what,
                       {QStringLiteral("app.velloran.Velloran"), name, qlonglong{1}});
    }

    /// The user chooses others in the settings.
    void choose(const QList<int>& keys, const QString& name = "toggle") {
        service.signal("/kglobalaccel", "org.kde.KGlobalAccel", "yourShortcutsChanged",
                       {QStringList{"app.velloran.Velloran", name}, QVariant::fromValue(sequences(keys))});
    }

    /// Who has keys, by the names of the shortcut and of the program.
    struct Holder {
        QString action;
        QString program;
    };

    QMap<int, Holder> taken;
    QMap<QString, QList<int>> bound;
    /// Keys that somebody else takes between question and binding.
    QList<int> lost;
    QStringList refusedMethods;
    FakeService service;

private:
    static platform::plasma::KeySequenceList sequences(const QList<int>& keys) {
        platform::plasma::KeySequenceList list;
        for (const int key : keys) {
            list.append(platform::plasma::KeySequence{key});
        }
        return list;
    }

    std::optional<QVariantList> answer(const QString& method, const QVariantList& arguments) {
        using platform::plasma::KeySequence;
        if (refusedMethods.contains(method)) {
            return std::nullopt;
        }
        if (method == "globalShortcutAvailable") {
            return QVariantList{!taken.contains(qdbus_cast<KeySequence>(arguments.value(0)).key)};
        }
        if (method == "globalShortcutsByKey") {
            return QVariantList{holders(qdbus_cast<KeySequence>(arguments.value(0)).key)};
        }
        const QString name = arguments.value(0).toStringList().value(1);
        if (method == "doRegister") {
            bound[name];
        } else if (method == "setShortcutKeys" && bound.contains(name)) {
            bound[name].clear();
            for (const KeySequence& sequence : qdbus_cast<platform::plasma::KeySequenceList>(arguments.value(1))) {
                if (!lost.contains(sequence.key)) {
                    bound[name].append(sequence.key);
                }
            }
            flags = arguments.value(2).toUInt();
            identity = arguments.value(0).toStringList();
            return QVariantList{QVariant::fromValue(sequences(bound[name]))};
        } else if (method == "unregister") {
            return QVariantList{bound.remove(arguments.value(1).toString()) > 0};
        }
        return QVariantList{};
    }

    /// As "a(ssssssaiai)".
    QVariant holders(int key) {
        QList<ShortcutInfo> list;
        if (taken.contains(key)) {
            const auto& [action, program] = taken[key];
            list.append({{"an action", action, "a program", program, "default", "Default Context"}, {key}});
        }
        return QVariant::fromValue(list);
    }

public:
    uint flags = 0;
    QStringList identity;
};

} // namespace velloran::tests
