#include "platform/SoundModule.h"
#include "platform/pulse/PulseSounds.h"

#include <string_view>

extern "C" [[gnu::visibility("default")]] velloran::platform::SystemSounds* velloranMakeSounds(const char* version) {
    using velloran::platform::pulse::PulseSounds;
    return version == std::string_view(VELLORAN_VERSION) ? new PulseSounds : nullptr;
}
