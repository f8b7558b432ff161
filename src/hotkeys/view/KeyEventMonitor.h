#pragma once

#include "hotkeys/KeyMonitor.h"

#include <QObject>

#include "async/Published.h"
#include "keys/DefaultKeyCharacters.h"
#include "platform/Desktop.h"

#include <functional>
#include <optional>
#include <set>

class QKeyEvent;

namespace velloran {

/// Takes key presses out of the toolkit's event stream, those included that would move the focus or trigger a shortcut.
/// A key whose press was taken stays taken until it is let go: neither its repeats nor its release reach anybody. Needs
/// the application object; main thread.
class KeyEventMonitor final : public QObject, public KeyMonitor {
    Q_OBJECT

public:
    /// Has the desktop pass its own combinations of keys on to this program, as far as it does that, until the result
    /// goes away.
    using TakeAllKeys = std::function<Subscription()>;

    /// Becomes the one monitor of the process; a second one at the same time is a fatal error. What the
    /// keys give is asked of `desktop`, which outlives it; where that does not tell, the default layout does.
    explicit KeyEventMonitor(
        const Published<platform::Desktop>& desktop, TakeAllKeys takeAllKeys = [] { return Subscription(); });
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

    std::optional<std::string> charactersOf(std::uint32_t evdevCode, bool shiftHeld);

    const Published<platform::Desktop>& desktop_;
    /// Made when it is needed: reading a layout takes its time.
    std::optional<keys::DefaultKeyCharacters> defaultCharacters_;
    const TakeAllKeys takeAllKeys_;
    Handler handler_;
    /// While there is a handler.
    Subscription allKeys_;
    /// Which installation the handler came from: an earlier one's end must not remove it.
    std::uint64_t installation_ = 0;
    /// Native scan codes of taken keys that are still down.
    std::set<quint32> heldKeys_;
    bool isFiltering_ = false;
};

} // namespace velloran
