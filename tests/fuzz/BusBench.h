#pragma once

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>

#include "fuzz/BusValues.h"
#include "fuzz/require.h"
#include "harness/PrivateBus.h"
#include "platform/bus/SessionBus.h"

#include <functional>
#include <optional>
#include <utility>

namespace velloran {

/// A bus of its own, on which the program's connection has the names of everybody that it asks. Questions and answers
/// stay in this process then, and only signals go by way of the bus. Whoever is asked answers with whatever the bytes
/// say. There is one for all inputs.
class BusBench : public QDBusVirtualObject {
public:
    /// What one would answer who knows the question; nothing for the others.
    using Sensible = std::function<std::optional<QVariantList>(const QDBusMessage& question, BusValues& values)>;

    /// Is told of each answer that was given.
    using Answered = std::function<void(const QDBusMessage& question, const QDBusMessage& answer)>;

    explicit BusBench(
        Sensible sensible, Answered answered = [](const auto&, const auto&) {})
        : sensible_(std::move(sensible)), answered_(std::move(answered)) {
        QDBusConnection bus = session.connection();
        require(bus.isConnected(), "the bench has a bus");
        for (const char* const name :
             {"org.freedesktop.portal.Desktop", "org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
              "org.gnome.Shell.ScreenShield", "org.freedesktop.login1", "org.kde.kglobalaccel", "org.kde.keyboard",
              "org.kde.KWin"}) {
            require(bus.registerService(name), "the bench has the names of others");
        }
        for (const char* const path : {"/org", "/ScreenSaver", "/kglobalaccel", "/Layouts", "/Scripting"}) {
            require(bus.registerVirtualObject(path, this, QDBusConnection::SubPath), "the bench answers for others");
        }
    }

    /// What is answered from now on; null to end it.
    void answerFrom(BusValues* values) { values_ = values; }

    /// Sends a signal, as somebody else on the bus may, and lets it arrive.
    void signal(const QString& path, const QString& interface, const QString& name, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createSignal(path, interface, name);
        message.setArguments(arguments);
        session.connection().send(message);
        arrive();
    }

    /// Calls the program.
    QDBusMessage call(const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments) const {
        QDBusMessage message =
            QDBusMessage::createMethodCall(session.connection().baseService(), path, interface, method);
        message.setArguments(arguments);
        return session.connection().call(message);
    }

    /// Lets everything come that is under way on the bus.
    void arrive() const {
        // Answered behind whatever was sent before.
        session.connection().call(QDBusMessage::createMethodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                                                 "org.freedesktop.DBus", "GetId"));
        settle();
    }

    /// Lets everything come that is under way in this process.
    static void settle() {
        constexpr int mostTurns = 100;
        for (int turn = 0; turn < mostTurns; ++turn) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            if (!QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents)) {
                return;
            }
        }
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (values_ == nullptr || !message.isReplyRequired()) {
            return false;
        }
        const QDBusMessage answer = answerTo(message);
        connection.send(answer);
        answered_(message, answer);
        return true;
    }

private:
    QDBusMessage answerTo(const QDBusMessage& question) {
        const std::uint8_t manner = values_->byte() % 8;
        if (manner == 0) {
            return question.createErrorReply(QDBusError::AccessDenied, values_->text());
        }
        const auto answer = manner > 2 ? sensible_(question, *values_) : std::nullopt;
        return question.createReply(answer ? *answer : values_->list(3));
    }

    // In the order in which they are needed.
    int count_ = 1;
    char name_[5] = "fuzz";                 // NOLINT(modernize-avoid-c-arrays): the toolkit wants the arguments of main
    char* arguments_[2] = {name_, nullptr}; // NOLINT(modernize-avoid-c-arrays)
    QCoreApplication application_{count_, arguments_};
    tests::PrivateBus bus_;
    BusValues* values_ = nullptr;
    Sensible sensible_;
    Answered answered_;

public:
    platform::bus::SessionBus session{{QByteArray::fromStdString(bus_.address()), platform::bus::BusState::answers}};
};

} // namespace velloran
