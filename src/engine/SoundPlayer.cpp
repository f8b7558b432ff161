#include "engine/SoundPlayer.h"

namespace velloran {

SoundPlayer::SoundPlayer(platform::SystemSounds& sounds) : sound_(sounds.load("Tink")) {}

void SoundPlayer::playClickTick() {
    if (sound_) {
        sound_->stop();
        sound_->play();
    }
}

} // namespace velloran
