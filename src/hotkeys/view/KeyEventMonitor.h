#pragma once

#include "hotkeys/KeyMonitor.h"

#include <QObject>

#include <set>

class QKeyEvent;

namespace velloran::platform {
class KeyCharacters;
}

namespace velloran {

/// Takes key presses out of the toolkit's event stream, those included that would move the focus or trigger a shortcut.
/// A key whose press was taken stays taken until it is let go: neither its repeats nor its release reach anybody. Needs
/// the application object; main thread.
class KeyEventMonitor final : public QObject, public KeyMonitor {
    Q_OBJECT

public:
    /// Becomes the one monitor of the process; a second one at the same time is a fatal error. `characters` outlives
    /// it.
    explicit KeyEventMonitor(platform::KeyCharacters& characters);
    KeyEventMonitor(const KeyEventMonitor&) = delete;
    KeyEventMonitor& operator=(const KeyEventMonitor&) = delete;
    ~KeyEventMonitor() override;

    /// The one monitor. Asking while there is none is a fatal error.
    static KeyEventMonitor& current();

    Subscription installKeyDownMonitor(Handler handler) override;

    /// Whether key presses are being taken.
    [[nodiscard]] bool isInstalled() const { return handler_ != nullptr; }

    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    bool takeOverride(QKeyEvent& event);
    bool takePress(const QKeyEvent& event);
    bool takeRelease(const QKeyEvent& event);
    void filterWhileNeeded();

    platform::KeyCharacters& characters_;
    Handler handler_;
    /// Which installation the handler came from: an earlier one's end must not remove it.
    std::uint64_t installation_ = 0;
    /// Native scan codes of taken keys that are still down.
    std::set<quint32> heldKeys_;
    bool isFiltering_ = false;
};

} // namespace velloran
