#include "harness/FakeBackEnd.h"

#include "base/fatal.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace velloran::tests {

namespace {

const auto root = QStringLiteral("/org/freedesktop/portal/desktop");

const auto shortcutsInterface = QStringLiteral("org.freedesktop.impl.portal.GlobalShortcuts");

constexpr uint pointer = 2;
constexpr uint version = 2;

/// What a desktop has the portal keep, to know a permission by.
struct Kept {
    QString vendor = QStringLiteral("velloran");
    uint version = 1;
    QDBusVariant data = QDBusVariant(QStringLiteral("pointer"));
};

QDBusArgument& operator<<(QDBusArgument& argument, const Kept& kept) {
    argument.beginStructure();
    argument << kept.vendor << kept.version << kept.data;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Kept& kept) {
    argument.beginStructure();
    argument >> kept.vendor >> kept.version >> kept.data;
    argument.endStructure();
    return argument;
}

/// The toolkit knows its connections by name.
QString nextConnectionName() {
    static int count = 0;
    return QStringLiteral("fake back end %1").arg(++count);
}

} // namespace

FakeBackEnd::FakeBackEnd(const std::string& busAddress)
    : bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), nextConnectionName())) {
    qDBusRegisterMetaType<Kept>();
    platform::portal::registerShortcuts();
    if (!bus_.registerVirtualObject(root, this, QDBusConnection::SubPath) || !bus_.registerService(name)) {
        fatalError("The bus takes no back end");
    }
}

FakeBackEnd::~FakeBackEnd() {
    const QString connection = bus_.name();
    bus_.unregisterObject(root, QDBusConnection::UnregisterTree);
    bus_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(connection);
}

void FakeBackEnd::grantNow() {
    grant(waiting_);
}

void FakeBackEnd::closeSession() {
    isOpen = false;
    bus_.send(QDBusMessage::createSignal(session_, QStringLiteral("org.freedesktop.impl.portal.Session"),
                                         QStringLiteral("Closed")));
}

void FakeBackEnd::pressShortcut() {
    for (const auto* const signal : {"Activated", "Deactivated"}) {
        tellOfShortcuts(signal, {shortcut.identifier, qulonglong{1}, QVariantMap()});
    }
}

void FakeBackEnd::changeShortcut(const QString& words) {
    isShortcutBound = true;
    otherTrigger = words;
    tellOfShortcuts("ShortcutsChanged", {boundShortcuts().value("shortcuts")});
}

void FakeBackEnd::removeShortcut() {
    isShortcutBound = false;
    tellOfShortcuts("ShortcutsChanged", {boundShortcuts().value("shortcuts")});
}

void FakeBackEnd::closeShortcut() {
    isShortcutOpen = false;
    bus_.send(QDBusMessage::createSignal(shortcutSession_, QStringLiteral("org.freedesktop.impl.portal.Session"),
                                         QStringLiteral("Closed")));
}

void FakeBackEnd::tellOfShortcuts(const QString& signal, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createSignal(root, shortcutsInterface, signal);
    message.setArguments(QVariantList{QVariant::fromValue(QDBusObjectPath(shortcutSession_))} + arguments);
    bus_.send(message);
}

QString FakeBackEnd::introspect(const QString& /*path*/) const {
    return {};
}

bool FakeBackEnd::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) {
    const QString method = message.member();
    const QVariantList arguments = message.arguments();
    if (message.interface() == shortcutsInterface) {
        return handleShortcuts(message);
    }
    if (method == "GetAll") {
        bus_.send(message.createReply(QVariantMap{{"AvailableDeviceTypes", pointer}, {"version", version}}));
    } else if (method == "CreateSession") {
        session_ = arguments.value(1).value<QDBusObjectPath>().path();
        programs.append(arguments.value(2).toString());
        isOpen = true;
        answer(message, 0);
    } else if (method == "SelectDevices") {
        options = qdbus_cast<QVariantMap>(arguments.value(3));
        isRestored = options.contains("restore_data");
        answer(message, 0);
    } else if (method == "Start") {
        start(message);
    } else if (method == "NotifyPointerButton") {
        takeButton(message);
    } else if (method == "Close") {
        if (message.interface() == "org.freedesktop.impl.portal.Request") {
            ++withdrawn;
        } else if (message.path() == session_) {
            isOpen = false;
        } else if (message.path() == shortcutSession_) {
            isShortcutOpen = false;
        }
        bus_.send(message.createReply());
    } else {
        return false;
    }
    return true;
}

bool FakeBackEnd::handleShortcuts(const QDBusMessage& message) {
    const QString method = message.member();
    const QString session = message.arguments().value(1).value<QDBusObjectPath>().path();
    if (method == "CreateSession") {
        shortcutSession_ = session;
        programs.append(message.arguments().value(2).toString());
        isShortcutOpen = true;
        isShortcutBound = false;
        answer(message, 0);
    } else if (method == "BindShortcuts") {
        bind(message);
    } else if (method == "ListShortcuts") {
        // One that has been started anew knows nothing of the sessions of the last.
        answer(message, session == shortcutSession_ ? 0 : 2,
               session == shortcutSession_ ? boundShortcuts() : QVariantMap());
    } else {
        return false;
    }
    return true;
}

void FakeBackEnd::bind(const QDBusMessage& message) {
    ++bindings;
    shortcut = platform::portal::shortcutsIn(message.arguments().value(2)).value(0);
    if (manner == Manner::hangs) {
        message.setDelayedReply(true);
        return;
    }
    if (manner != Manner::grants) {
        answer(message, manner == Manner::refuses ? 1 : 2);
        return;
    }
    isShortcutBound = binding != Binding::none;
    const bool isFailure = binding == Binding::saidToFail || binding == Binding::saidToFailWithoutAWord;
    const bool isTold = binding == Binding::told || binding == Binding::saidToFail;
    answer(message, isFailure ? 2 : 0, isTold ? boundShortcuts() : QVariantMap());
}

QVariantMap FakeBackEnd::boundShortcuts() const {
    platform::portal::ShortcutList bound;
    if (isShortcutBound) {
        const QString asked = shortcut.properties.value("preferred_trigger").toString();
        bound.append({shortcut.identifier,
                      {{"description", shortcut.properties.value("description")},
                       {"trigger_description", otherTrigger.isEmpty() ? asked : otherTrigger}}});
    }
    return {{"shortcuts", QVariant::fromValue(bound)}};
}

void FakeBackEnd::start(const QDBusMessage& message) {
    dialogs += isRestored ? 0 : 1;
    switch (manner) {
    case Manner::grants:
        grant(message);
        break;
    case Manner::refuses:
        answer(message, 1);
        break;
    case Manner::fails:
        answer(message, 2);
        break;
    case Manner::hangs:
    case Manner::isSlow:
        message.setDelayedReply(true);
        waiting_ = message;
        break;
    }
}

void FakeBackEnd::grant(const QDBusMessage& message) {
    QVariantMap results{{"devices", pointer}};
    if (options.contains("persist_mode")) {
        results.insert("persist_mode", options.value("persist_mode"));
        results.insert("restore_data", QVariant::fromValue(Kept()));
    }
    answer(message, 0, results);
}

void FakeBackEnd::takeButton(const QDBusMessage& message) {
    const QVariantList arguments = message.arguments();
    const bool isTaken = isOpen && arguments.value(0).value<QDBusObjectPath>().path() == session_;
    (isTaken ? buttons : ignored)
        .append(QStringLiteral("%1 %2")
                    .arg(arguments.value(2).toInt())
                    .arg(arguments.value(3).toUInt() == 1 ? "down" : "up"));
    bus_.send(message.createReply());
}

void FakeBackEnd::answer(const QDBusMessage& message, uint response, const QVariantMap& results) {
    bus_.send(message.createReply({response, results}));
}

} // namespace velloran::tests
