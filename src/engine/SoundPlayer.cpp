#include "engine/SoundPlayer.h"

#include "platform/Platform.h"

namespace velloran {

SoundPlayer::SoundPlayer() : sound_(platform::Platform::current().systemSounds.load("Tink")) {}

void SoundPlayer::playClickTick() {
    if (sound_) {
        sound_->stop();
        sound_->play();
    }
}

} // namespace velloran
