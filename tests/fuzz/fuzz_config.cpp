// Arbitrary bytes as an export file and as the stored configuration: whatever is read can be written, and comes back
// equal.

#include "fakes/FakePreferences.h"
#include "fuzz/require.h"
#include "presets/PresetStore.h"

#include <cstddef>
#include <cstdint>

using namespace velloran;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes bytes(reinterpret_cast<const char*>(data), size);
    fakes::FakePreferences preferences;
    preferences.values["velloran.config"] = bytes;
    PresetStore store(preferences);

    const auto imported = store.importConfig(bytes);
    const AutoClickerConfig loaded = store.loadConfig();
    if (!imported) {
        require(!imported.error().message.empty(), "a refusal has a reason");
        require(loaded == AutoClickerConfig::default_(), "what cannot be read gives the defaults");
        return 0;
    }
    const AutoClickerConfig& config = imported.value();
    require(loaded == config, "a file and a stored value are read alike");
    require(config.isValid() == !config.validationError(), "valid is what has no error");

    const auto file = store.exportConfig(config);
    require(file.ok(), "what was read can be exported");
    const auto again = store.importConfig(file.value());
    require(again.ok() && again.value() == config, "an exported configuration comes back equal");

    preferences.values.clear();
    store.saveConfig(config);
    require(preferences.holds("velloran.config"), "what was read can be saved");
    require(store.loadConfig() == config, "a saved configuration comes back equal");
    return 0;
}
