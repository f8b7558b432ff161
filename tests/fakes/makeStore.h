#pragma once

#include "engine/AutoClickerStore.h"
#include "fakes/RecordingPlatform.h"
#include "presets/PresetStore.h"

#include <memory>

namespace velloran::fakes {

/// A store on all of the platform's parts, but on `preferences`.
inline std::shared_ptr<AutoClickerStore> makeStore(RecordingPlatform& platform, platform::Preferences& preferences) {
    return AutoClickerStore::create(platform.loop, platform.desktop, platform.sounds(),
                                    std::make_unique<PresetStore>(preferences));
}

inline std::shared_ptr<AutoClickerStore> makeStore(RecordingPlatform& platform) {
    return makeStore(platform, platform.preferences);
}

} // namespace velloran::fakes
