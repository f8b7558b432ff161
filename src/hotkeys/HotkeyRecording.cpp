#include "hotkeys/HotkeyRecording.h"

#include <utility>

namespace velloran {

HotkeyRecording::HotkeyRecording(KeyMonitor& monitor, std::function<void(const HotkeyCombo&)> record,
                                 std::function<void()> changed)
    : keys_(monitor), record_(std::move(record)), changed_(std::move(changed)) {}

void HotkeyRecording::toggleRecording() {
    if (isRecording_) {
        stopMonitor();
        setRecording(false);
    } else {
        startMonitor();
        setRecording(true);
    }
}

void HotkeyRecording::startMonitor() {
    stopMonitor();
    monitor_.emplace(keys_.installKeyDownMonitor([this](const KeyEvent& event) { keyDown(event); }));
}

void HotkeyRecording::stopMonitor() {
    monitor_.reset();
}

void HotkeyRecording::keyDown(const KeyEvent& event) {
    if (event.keyCode == escapeKeyCode) {
        stopMonitor();
        setRecording(false);
        return;
    }
    const std::optional<HotkeyCombo> combo = HotkeyCombo::fromEvent(event);
    if (!combo) {
        return;
    }
    stopMonitor();
    record_(*combo);
    setRecording(false);
}

void HotkeyRecording::setRecording(bool isRecording) {
    if (isRecording_ == isRecording) {
        return;
    }
    isRecording_ = isRecording;
    changed_();
}

} // namespace velloran
