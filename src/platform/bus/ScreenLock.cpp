#include "platform/bus/ScreenLock.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <algorithm>

namespace velloran::platform::bus {

namespace {

/// Where a desktop tells of its lock.
struct Place {
    const char* service;
    const char* path;
    const char* interface;
};

constexpr std::array<Place, 4> places{{
    {"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver", "org.freedesktop.ScreenSaver"},
    {"org.freedesktop.ScreenSaver", "/ScreenSaver", "org.freedesktop.ScreenSaver"},
    {"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver"},
    // The name before is that of a go-between, which need not run.
    {"org.gnome.Shell.ScreenShield", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver"},
}};
constexpr std::size_t loginManager = places.size();

const auto sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
const auto propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

QDBusMessage questionTo(const Place& place) {
    return QDBusMessage::createMethodCall(place.service, place.path, place.interface, QStringLiteral("GetActive"));
}

QDBusMessage questionToLogin() {
    QDBusMessage question = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.login1"),
                                                           QStringLiteral("/org/freedesktop/login1/session/auto"),
                                                           propertiesInterface, QStringLiteral("Get"));
    question.setArguments({sessionInterface, QStringLiteral("LockedHint")});
    return question;
}

/// The answer comes as it is from a desktop, and wrapped from the login manager.
bool isYes(const QVariant& answer) {
    return answer.canConvert<QDBusVariant>() ? answer.value<QDBusVariant>().variant().toBool() : answer.toBool();
}

} // namespace

ScreenLock::ScreenLock(SessionBus& session, SessionBus& system) : session_(session), system_(system) {
    connect(&session_, &SessionBus::connected, this, &ScreenLock::followDesktop);
    connect(&session_, &SessionBus::lost, this, &ScreenLock::forgetDesktop);
    connect(&system_, &SessionBus::connected, this, &ScreenLock::followLogin);
    followDesktop();
    followLogin();
}

BusPlace ScreenLock::systemBus() {
    const QByteArray named = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    return {named.isEmpty() ? QByteArrayLiteral("unix:path=/run/dbus/system_bus_socket") : named, BusState::answers};
}

/// The toolkit would look up a sender that is named here, and wait for that. What came in other types it would end the
/// program for, whoever sends it.
void ScreenLock::followDesktop() {
    QDBusConnection bus = session_.connection();
    if (!bus.isConnected()) {
        return;
    }
    for (const Place& place : places) {
        bus.connect(QString(), place.path, place.interface, QStringLiteral("ActiveChanged"), QStringLiteral("b"), this,
                    SLOT(desktopTold(bool, QDBusMessage)));
    }
    askDesktop();
}

/// The path by which everybody may call the own session is not the one that tells of it.
void ScreenLock::followLogin() {
    QDBusConnection bus = system_.connection();
    if (!bus.isConnected()) {
        return;
    }
    bus.connect(QString(), QString(), propertiesInterface, QStringLiteral("PropertiesChanged"), {sessionInterface},
                QStringLiteral("sa{sv}as"), this, SLOT(loginTold(QString)));
    ask(system_, questionToLogin(), loginManager);
}

/// Anybody can say so. That the screen is locked is believed, as nothing is lost by that; that it is not, has to be
/// confirmed by whom it belongs to.
void ScreenLock::desktopTold(bool isActive, const QDBusMessage& message) {
    for (std::size_t source = 0; source < places.size(); ++source) {
        const Place& place = places.at(source);
        if (isActive && message.path() == place.path && message.interface() == place.interface) {
            take(source, true);
        }
    }
    askDesktop();
}

/// Nobody is left to say that it is locked no more. The login manager goes on telling.
void ScreenLock::forgetDesktop() {
    for (std::size_t source = 0; source < places.size(); ++source) {
        take(source, false);
    }
}

void ScreenLock::askDesktop() {
    for (std::size_t source = 0; source < places.size(); ++source) {
        ask(session_, questionTo(places.at(source)), source);
    }
}

void ScreenLock::loginTold(const QString& /*interface*/) {
    ask(system_, questionToLogin(), loginManager);
}

void ScreenLock::ask(SessionBus& bus, const QDBusMessage& question, std::size_t source) {
    QDBusMessage message = question;
    message.setAutoStartService(false);
    auto* const watcher = new QDBusPendingCallWatcher(bus.connection().asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, source] {
        const QDBusMessage answer = watcher->reply();
        watcher->deleteLater();
        take(source, answer.type() == QDBusMessage::ReplyMessage && isYes(answer.arguments().value(0)));
    });
}

void ScreenLock::take(std::size_t source, bool isLocked) {
    says_.at(source) = isLocked;
    const bool isAnyLocked = std::any_of(says_.begin(), says_.end(), [](bool says) { return says; });
    if (isAnyLocked != isLocked_) {
        isLocked_ = isAnyLocked;
        emit changed(isLocked_);
    }
}

} // namespace velloran::platform::bus
