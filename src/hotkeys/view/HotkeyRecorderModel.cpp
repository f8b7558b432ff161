#include "hotkeys/view/HotkeyRecorderModel.h"

#include "hotkeys/view/KeyEventMonitor.h"

namespace velloran {

HotkeyRecorderModel::HotkeyRecorderModel(QObject* parent) : QObject(parent) {}

HotkeyRecorderModel::~HotkeyRecorderModel() = default;

void HotkeyRecorderModel::toggleRecording() {
    if (!recording_) {
        recording_ = std::make_unique<HotkeyRecording>(
            KeyEventMonitor::current(), [this](const HotkeyCombo& combo) { emit recorded(QVariant::fromValue(combo)); },
            [this] { emit isRecordingChanged(); });
    }
    recording_->toggleRecording();
}

void HotkeyRecorderModel::stopMonitor() {
    if (recording_) {
        recording_->stopMonitor();
    }
}

} // namespace velloran
