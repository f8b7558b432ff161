#pragma once

#include "hotkeys/HotkeyRecording.h"

#include <QObject>
#include <QVariant>
#include <QtQmlIntegration>

#include <memory>

namespace velloran {

/// What the recorder shows and does. Recording needs a `KeyEventMonitor` to exist.
class HotkeyRecorderModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// Whether a key press is waited for.
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged FINAL)

public:
    explicit HotkeyRecorderModel(QObject* parent = nullptr);
    ~HotkeyRecorderModel() override;

    [[nodiscard]] bool isRecording() const { return recording_ && recording_->isRecording(); }

    /// Starts recording, or ends it and records nothing.
    Q_INVOKABLE void toggleRecording();

    /// Lets go of the keyboard; `isRecording` stays as it is.
    Q_INVOKABLE void stopMonitor();

signals:
    /// The user pressed the keys of a shortcut. `combo` holds a `velloran::HotkeyCombo`.
    void recorded(const QVariant& combo);
    void isRecordingChanged();

private:
    std::unique_ptr<HotkeyRecording> recording_;
};

} // namespace velloran
