#include "hotkeys/view/KeyEventMonitor.h"

#include "base/fatal.h"
#include "hotkeys/HotkeyCombo.h"
#include "keys/KeyCodes.h"
#include "platform/KeyCharacters.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <limits>
#include <optional>
#include <utility>

namespace velloran {

namespace {

KeyEventMonitor* theMonitor = nullptr;

/// Window systems count keys from eight.
constexpr quint32 firstScanCode = 8;

bool isModifierKey(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_Mode_switch:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
        return true;
    default:
        return false;
    }
}

std::uint64_t modifierFlags(Qt::KeyboardModifiers held) {
    ModifierFlags flags = ModifierFlags::none;
    if (held.testFlag(Qt::ShiftModifier)) {
        flags = flags | ModifierFlags::shift;
    }
    if (held.testFlag(Qt::ControlModifier)) {
        flags = flags | ModifierFlags::control;
    }
    if (held.testFlag(Qt::AltModifier)) {
        flags = flags | ModifierFlags::option;
    }
    if (held.testFlag(Qt::MetaModifier)) {
        flags = flags | ModifierFlags::command;
    }
    return static_cast<std::uint64_t>(flags);
}

} // namespace

KeyEventMonitor::KeyEventMonitor(const Published<platform::Desktop>& desktop, TakeAllKeys takeAllKeys)
    : desktop_(desktop), takeAllKeys_(std::move(takeAllKeys)) {
    if (theMonitor != nullptr) {
        fatalError("There is a key monitor already");
    }
    theMonitor = this;
}

KeyEventMonitor::~KeyEventMonitor() {
    theMonitor = nullptr;
}

KeyEventMonitor& KeyEventMonitor::current() {
    if (theMonitor == nullptr) {
        fatalError("There is no key monitor");
    }
    return *theMonitor;
}

Subscription KeyEventMonitor::installKeyDownMonitor(Handler handler) {
    handler_ = std::move(handler);
    allKeys_ = takeAllKeys_();
    const std::uint64_t installation = ++installation_;
    filterWhileNeeded();
    return Subscription([this, installation] {
        // The monitor itself may be gone by now, or serve somebody else.
        if (theMonitor == this && installation_ == installation) {
            handler_ = nullptr;
            allKeys_.cancel();
            filterWhileNeeded();
        }
    });
}

bool KeyEventMonitor::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        return takeOverride(static_cast<QKeyEvent&>(*event));
    case QEvent::KeyPress:
        return takePress(static_cast<QKeyEvent&>(*event));
    case QEvent::KeyRelease:
        return takeRelease(static_cast<QKeyEvent&>(*event));
    case QEvent::Shortcut:
        return isInstalled();
    default:
        return false;
    }
}

/// Asked before the shortcuts are looked up; accepting makes the press an ordinary one, which is then taken.
bool KeyEventMonitor::takeOverride(QKeyEvent& event) {
    const bool isRepeatOfTaken = event.isAutoRepeat() && heldKeys_.contains(event.nativeScanCode());
    if (!isRepeatOfTaken && (!isInstalled() || isModifierKey(event.key()))) {
        return false;
    }
    event.accept();
    return true;
}

bool KeyEventMonitor::takePress(const QKeyEvent& event) {
    const quint32 scanCode = event.nativeScanCode();
    if (event.isAutoRepeat()) {
        return isInstalled() || heldKeys_.contains(scanCode);
    }
    // A fresh press: whatever was held under this code has been let go, even if its release went elsewhere.
    heldKeys_.erase(scanCode);
    if (!isInstalled() || isModifierKey(event.key())) {
        filterWhileNeeded();
        return false;
    }
    heldKeys_.insert(scanCode);
    const std::optional<std::uint32_t> keyCode =
        scanCode < firstScanCode ? std::nullopt : keys::virtualKeyFromEvdev(scanCode - firstScanCode);
    if (keyCode && *keyCode <= std::numeric_limits<std::uint16_t>::max()) {
        const bool shiftHeld = event.modifiers().testFlag(Qt::ShiftModifier);
        const KeyEvent pressed{modifierFlags(event.modifiers()), static_cast<std::uint16_t>(*keyCode),
                               charactersOf(scanCode - firstScanCode, shiftHeld)};
        const Handler handler = handler_; // the call may remove it
        handler(pressed);
    }
    return true;
}

bool KeyEventMonitor::takeRelease(const QKeyEvent& event) {
    if (!heldKeys_.contains(event.nativeScanCode())) {
        return false;
    }
    if (!event.isAutoRepeat()) {
        heldKeys_.erase(event.nativeScanCode());
        filterWhileNeeded();
    }
    return true;
}

std::optional<std::string> KeyEventMonitor::charactersOf(std::uint32_t evdevCode, bool shiftHeld) {
    if (const auto told = desktop_.get().keyCharacters.part) {
        return told->charactersIgnoringModifiers(evdevCode, shiftHeld);
    }
    if (!defaultCharacters_) {
        defaultCharacters_.emplace();
    }
    return defaultCharacters_->charactersIgnoringModifiers(evdevCode, shiftHeld);
}

/// Events pass through here only while somebody waits for a key or a taken key is down: every event of the program
/// would.
void KeyEventMonitor::filterWhileNeeded() {
    const bool isNeeded = isInstalled() || !heldKeys_.empty();
    if (isNeeded == isFiltering_) {
        return;
    }
    isFiltering_ = isNeeded;
    if (isNeeded) {
        QCoreApplication::instance()->installEventFilter(this);
    } else {
        QCoreApplication::instance()->removeEventFilter(this);
    }
}

} // namespace velloran
