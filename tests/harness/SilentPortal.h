#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QString>

#include <atomic>
#include <string>

namespace velloran::tests {

/// A portal that takes every question and answers none.
class SilentPortal : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// Takes the portal's place on the bus at that address.
    explicit SilentPortal(const std::string& busAddress);
    ~SilentPortal() override;

    /// Whether anybody has asked for file dialogs.
    [[nodiscard]] bool isAsked() const { return isAsked_; }

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QDBusConnection bus_;
    std::atomic<bool> isAsked_ = false;
};

} // namespace velloran::tests
