#pragma once

#include "platform/SystemSounds.h"

#include <memory>

namespace velloran {

/// Plays the tick that goes with a click. Main thread.
class SoundPlayer {
public:
    /// Loads the system sound "Tink"; without one this object is silent.
    explicit SoundPlayer(platform::SystemSounds& sounds);
    SoundPlayer(const SoundPlayer&) = delete;
    SoundPlayer& operator=(const SoundPlayer&) = delete;

    /// Plays the tick from its start, cutting off one that is still sounding.
    void playClickTick();

private:
    std::unique_ptr<platform::Sound> sound_;
};

} // namespace velloran
