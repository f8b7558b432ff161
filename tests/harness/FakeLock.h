#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <string>

namespace velloran::tests {

/// What a desktop, or the login manager, tells of the lock of the screen.
class FakeLock : public QDBusVirtualObject {
public:
    /// Takes the name on the bus at that address; tells from the object at the path.
    FakeLock(const std::string& busAddress, const QString& service, const QString& path)
        : bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), service)), path_(path) {
        bus_.registerVirtualObject("/", this, QDBusConnection::SubPath);
        bus_.registerService(service);
    }

    FakeLock(const FakeLock&) = delete;
    FakeLock& operator=(const FakeLock&) = delete;

    ~FakeLock() override {
        const QString name = bus_.name();
        bus_.unregisterObject("/", QDBusConnection::UnregisterTree);
        bus_ = QDBusConnection(QString());
        QDBusConnection::disconnectFromBus(name);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override {
        ++asked;
        const bool isLogin = message.member() == "Get";
        bus_.send(message.createReply(isLogin ? QVariant::fromValue(QDBusVariant(isLocked)) : QVariant(isLocked)));
        return true;
    }

    void tell(const QString& interface, const QString& signal, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createSignal(path_, interface, signal);
        message.setArguments(arguments);
        bus_.send(message);
    }

    /// What it answers.
    bool isLocked = false;
    /// How often it was asked.
    int asked = 0;

private:
    QDBusConnection bus_;
    QString path_;
};

} // namespace velloran::tests
