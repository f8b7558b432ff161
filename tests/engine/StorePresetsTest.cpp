#include "engine/StoreTest.h"
#include "model/SampleConfig.h"

#include <limits>
#include <string>
#include <vector>

namespace velloran {

namespace {

class StorePresetsTest : public StoreTest {
protected:
    [[nodiscard]] const std::vector<Preset>& presets() const { return store->presets().get(); }

    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> found;
        for (const Preset& preset : presets()) {
            found.push_back(preset.name);
        }
        return found;
    }

    [[nodiscard]] int presetWrites() const {
        const auto& written = platform.preferences.written;
        return static_cast<int>(std::count(written.begin(), written.end(), "velloran.presets"));
    }
};

} // namespace

TEST_F(StorePresetsTest, AllPresetsAreTheBuiltInsAndThenTheUsers) {
    open();
    EXPECT_EQ(store->allPresets(), Preset::builtIns());
    store->saveCurrentAsPreset("Mine");
    const std::vector<Preset> all = store->allPresets();
    ASSERT_EQ(all.size(), 4U);
    EXPECT_TRUE(std::equal(Preset::builtIns().begin(), Preset::builtIns().end(), all.begin()));
    EXPECT_EQ(all.back(), presets().front());
}

TEST_F(StorePresetsTest, SavedPresetHasTheCurrentConfigurationTheNameAsItIsAndTheTime) {
    open(samples::fullConfig());
    advance(5.5);
    store->saveCurrentAsPreset("  My preset\n");
    ASSERT_EQ(presets().size(), 1U);
    const Preset& saved = presets().front();
    EXPECT_EQ(saved.name, "  My preset\n");
    EXPECT_EQ(saved.config, samples::fullConfig());
    EXPECT_EQ(saved.createdAt, platform.loop.now());
    EXPECT_NE(saved.id, Uuid());
    store->saveCurrentAsPreset("");
    EXPECT_EQ(presets().back().name, "");
    EXPECT_NE(presets().back().id, presets().front().id);
}

TEST_F(StorePresetsTest, SavingAppendsAndWritesTheListAtOnce) {
    open();
    store->saveCurrentAsPreset("One");
    EXPECT_EQ(presetWrites(), 1);
    store->saveCurrentAsPreset("Two");
    EXPECT_EQ(presetWrites(), 2);
    EXPECT_EQ(names(), (std::vector<std::string>{"One", "Two"}));
    EXPECT_EQ(PresetStore(platform.preferences).loadPresets(), presets());
}

TEST_F(StorePresetsTest, DeletingTakesEveryPresetWithThatIdentifier) {
    Preset one = Preset::make("One", {});
    Preset same = one;
    same.name = "Same identifier";
    const Preset two = Preset::make("Two", {});
    PresetStore(platform.preferences).savePresets({one, two, same});
    open();
    ASSERT_EQ(presets().size(), 3U);
    one.name = "the name does not matter";
    store->deletePreset(one);
    EXPECT_EQ(presets(), std::vector<Preset>{two});
    EXPECT_EQ(PresetStore(platform.preferences).loadPresets(), std::vector<Preset>{two});
    EXPECT_EQ(presetWrites(), 1);
}

TEST_F(StorePresetsTest, DeletingAnElementOfTheListItself) {
    open();
    store->saveCurrentAsPreset("One");
    store->saveCurrentAsPreset("Two");
    store->deletePreset(presets().front());
    EXPECT_EQ(names(), std::vector<std::string>{"Two"});
    store->deletePreset(presets().front());
    EXPECT_TRUE(presets().empty());
    EXPECT_EQ(platform.preferences.bytes("velloran.presets"), "[]");
}

TEST_F(StorePresetsTest, DeletingABuiltInOnlyRewritesTheList) {
    open();
    store->saveCurrentAsPreset("Mine");
    store->deletePreset(Preset::builtIns().front());
    EXPECT_EQ(names(), std::vector<std::string>{"Mine"});
    EXPECT_EQ(store->allPresets().size(), 4U);
    EXPECT_EQ(presetWrites(), 2);
}

TEST_F(StorePresetsTest, CorruptListIsReplacedByTheNextSave) {
    platform.preferences.values["velloran.presets"] = Bytes("[{}]");
    open();
    EXPECT_TRUE(presets().empty());
    EXPECT_EQ(store->allPresets(), Preset::builtIns());
    EXPECT_EQ(platform.preferences.bytes("velloran.presets"), "[{}]");
    store->saveCurrentAsPreset("Mine");
    EXPECT_EQ(PresetStore(platform.preferences).loadPresets(), presets());
}

TEST_F(StorePresetsTest, AppliedPresetIsSavedByTheSubscription) {
    open();
    advance(1.0);
    const int before = platform.preferences.writes;
    store->apply(Preset::builtIns().at(2));
    EXPECT_EQ(store->config.get(), Preset::builtIns().at(2).config);
    EXPECT_EQ(platform.preferences.writes, before);
    advance(0.25);
    EXPECT_EQ(PresetStore(platform.preferences).loadConfig(), Preset::builtIns().at(2).config);
    EXPECT_EQ(presetWrites(), 0);
}

TEST_F(StorePresetsTest, ApplyingDoesNotTouchARunningLoop) {
    open(unlimited(2.0));
    store->start();
    advance(1.0);
    store->apply(Preset::builtIns().at(1));
    advance(5.0);
    expectClicks({0.0, 2.0, 4.0, 6.0});
}

TEST_F(StorePresetsTest, ResetGoesBackToTheDefaultsAndIsSaved) {
    AutoClickerConfig config = samples::fullConfig();
    config.hotkey.reset();
    open(config);
    store->resetToDefaults();
    EXPECT_EQ(store->config.get(), AutoClickerConfig::default_());
    advance(0.25);
    EXPECT_EQ(PresetStore(platform.preferences).loadConfig(), AutoClickerConfig::default_());
}

TEST_F(StorePresetsTest, ExportIsTheConfigurationsFile) {
    open(samples::fullConfig());
    EXPECT_EQ(store->exportConfigData(), PresetStore(platform.preferences).exportConfig(samples::fullConfig()).value());
}

TEST_F(StorePresetsTest, ExportOfWhatHasNoJsonFormGivesNothing) {
    open();
    store->config.modify(
        [](AutoClickerConfig& config) { config.stationarySeconds = std::numeric_limits<double>::infinity(); });
    EXPECT_EQ(store->exportConfigData(), std::nullopt);
}

TEST_F(StorePresetsTest, ImportTakesTheConfigurationOver) {
    open();
    EXPECT_TRUE(store->importConfig(PresetStore(platform.preferences).exportConfig(samples::fullConfig()).value()));
    EXPECT_EQ(store->config.get(), samples::fullConfig());
    advance(0.25);
    EXPECT_EQ(PresetStore(platform.preferences).loadConfig(), samples::fullConfig());
}

TEST_F(StorePresetsTest, ImportOfAnInvalidConfigurationIsTakenAndRefusedAtStart) {
    open();
    EXPECT_TRUE(store->importConfig(PresetStore(platform.preferences).exportConfig(counted(0)).value()));
    store->start();
    EXPECT_EQ(status(), ClickerStatus::error);
}

TEST_F(StorePresetsTest, FailingImportChangesNothing) {
    open(samples::fullConfig());
    advance(1.0);
    int changes = 0;
    const Subscription watching = store->config.observeWillChange([&changes] { ++changes; });
    const std::string preset = encode(Preset::make("Mine", {})).dump();
    for (const std::string& bytes : {std::string(), std::string("[]"), std::string("{"), preset, "[" + preset + "]"}) {
        EXPECT_FALSE(store->importConfig(bytes)) << bytes;
    }
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(store->config.get(), samples::fullConfig());
    EXPECT_EQ(status(), ClickerStatus::idle);
}

} // namespace velloran
