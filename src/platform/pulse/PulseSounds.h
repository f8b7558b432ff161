#pragma once

#include "platform/SystemSounds.h"
#include "platform/pulse/TickPlayer.h"

namespace velloran::platform::pulse {

/// The sounds of this program, played by the user's sound server. There is one, the tick, under the name "Tink".
/// Nothing is started and nobody is connected to before it is played.
class PulseSounds final : public SystemSounds {
public:
    std::unique_ptr<Sound> load(const std::string& name) override;

private:
    TickPlayer player_;
};

} // namespace velloran::platform::pulse
