// Arbitrary bytes as the stored list of presets: a list that is read can be saved, and comes back equal.

#include "fakes/FakePreferences.h"
#include "fuzz/require.h"
#include "presets/PresetStore.h"

#include <cstddef>
#include <cstdint>

using namespace velloran;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fakes::FakePreferences preferences;
    preferences.values["velloran.presets"] = Bytes(reinterpret_cast<const char*>(data), size);
    PresetStore store(preferences);

    const std::vector<Preset> presets = store.loadPresets();
    require(preferences.writes == 0, "reading writes nothing");
    preferences.values.clear();
    store.savePresets(presets);
    require(preferences.holds("velloran.presets"), "what was read can be saved");
    require(store.loadPresets() == presets, "a saved list comes back equal");
    for (const Preset& preset : presets) {
        require(Uuid::fromText(preset.id.text()) == preset.id, "an identifier comes back equal");
    }
    return 0;
}
