#pragma once

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QString>
#include <QTemporaryFile>

#include "async/EventLoop.h"
#include "async/Published.h"
#include "base/Moment.h"
#include "platform/Desktop.h"
#include "platform/PointerPosition.h"
#include "platform/bus/BusService.h"

#include <memory>
#include <optional>

namespace velloran::platform::plasma {

/// Where the pointer is, told by a script in KWin at each motion. The script is loaded when somebody first asks, and
/// unloaded at the end, or with the first motion that comes a minute after the last question: nothing is told that
/// nobody wants to know. Known is what the KWin that runs now has told, as long as that answers. Nothing here waits.
/// Main thread.
class PlasmaPointer final : public QDBusVirtualObject, public PointerPosition {
    Q_OBJECT

public:
    /// Both have to outlive this.
    PlasmaPointer(EventLoop& loop, bus::SessionBus& bus);
    PlasmaPointer(const PlasmaPointer&) = delete;
    PlasmaPointer& operator=(const PlasmaPointer&) = delete;
    ~PlasmaPointer() override;

    /// This, from when KWin is first seen to run scripts; nothing in all of it before. This has to outlive whoever uses
    /// it.
    [[nodiscard]] const Published<DesktopPart<PointerPosition>>& part() const { return part_; }

    /// In points. Nothing until the script has told, and while KWin does not answer.
    std::optional<Point> currentPosition() override;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    void offer();
    void lose();
    void load();
    void run(int script);
    void unload();
    void confirm();

    EventLoop& loop_;
    bus::SessionBus& bus_;
    bus::BusService kwin_;
    Published<DesktopPart<PointerPosition>> part_{DesktopPart<PointerPosition>()};
    std::unique_ptr<QTemporaryFile> script_;
    bool isLoaded_ = false;
    std::optional<Point> told_;
    /// When somebody has asked last.
    Moment asked_;
    /// When it was known last that the script is there.
    Moment confirmed_;
    /// Since when KWin owes the word that the script is still there.
    std::optional<Moment> unconfirmedSince_;
};

} // namespace velloran::platform::plasma
