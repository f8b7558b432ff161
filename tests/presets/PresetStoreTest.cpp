#include "presets/PresetStore.h"

#include "fakes/RecordingPlatform.h"
#include "model/SampleConfig.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace velloran {

namespace {

constexpr const char* configKey = "velloran.config";
constexpr const char* presetsKey = "velloran.presets";

class PresetStoreTest : public testing::Test {
protected:
    [[nodiscard]] std::string stored(const char* key) const { return preferences.bytes(key).value_or("(nothing)"); }

    static std::vector<Preset> twoPresets() {
        return {Preset::make("First", samples::fullConfig()), Preset::make("Second", AutoClickerConfig())};
    }

    /// The stored list of two presets with the second one altered.
    template<typename Change>
    static std::string listWithBadSecond(Change change) {
        json::Value array = json::Value::array();
        for (const Preset& preset : twoPresets()) {
            array.push_back(encode(preset));
        }
        change(array[1]);
        return array.dump();
    }

    fakes::RecordingPlatform platform;
    fakes::FakePreferences& preferences = platform.preferences;
    PresetStore store{preferences};
};

} // namespace

TEST_F(PresetStoreTest, FirstRunHasDefaultsAndNoPresets) {
    EXPECT_EQ(store.loadConfig(), AutoClickerConfig::default_());
    EXPECT_TRUE(store.loadPresets().empty());
    EXPECT_EQ(Preset::builtIns().size(), 3U);
    EXPECT_EQ(preferences.writes, 0);
}

TEST_F(PresetStoreTest, WorksOnThePreferencesItIsGiven) {
    fakes::FakePreferences others;
    PresetStore other(others);
    other.saveConfig(samples::fullConfig());
    EXPECT_EQ(other.loadConfig(), samples::fullConfig());
    EXPECT_EQ(store.loadConfig(), AutoClickerConfig::default_());
    EXPECT_TRUE(others.holds(configKey));
}

TEST_F(PresetStoreTest, ConfigurationIsStoredAsCompactJsonBytes) {
    store.saveConfig(samples::fullConfig());
    EXPECT_EQ(preferences.written, std::vector<std::string>{configKey});
    EXPECT_EQ(stored(configKey).find_first_of("\n "), std::string::npos) << stored(configKey);
    const auto value = json::parse(stored(configKey));
    ASSERT_TRUE(value);
    EXPECT_EQ(value.value(), encode(samples::fullConfig()));
    EXPECT_EQ(store.loadConfig(), samples::fullConfig());
}

TEST_F(PresetStoreTest, CorruptConfigurationGivesDefaultsAndStays) {
    for (const char* bytes :
         {"", "{", "null", "[]", "{}", "\xFF\xFE", R"({"mouseButton":"left"})", "{\"a\":1}trailing"}) {
        preferences.values[configKey] = Bytes(bytes);
        EXPECT_EQ(store.loadConfig(), AutoClickerConfig::default_()) << bytes;
        EXPECT_EQ(stored(configKey), bytes);
    }
    EXPECT_EQ(preferences.writes, 0);
    EXPECT_TRUE(platform.journal.empty()) << "nothing is logged";
    store.saveConfig(samples::fullConfig());
    EXPECT_EQ(store.loadConfig(), samples::fullConfig());
}

TEST_F(PresetStoreTest, ConfigurationOfAnotherStoredTypeGivesDefaults) {
    preferences.values[configKey] = std::int64_t{7};
    EXPECT_EQ(store.loadConfig(), AutoClickerConfig::default_());
    preferences.values[presetsKey] = true;
    EXPECT_TRUE(store.loadPresets().empty());
}

TEST_F(PresetStoreTest, InvalidConfigurationIsLoadedAsItIs) {
    AutoClickerConfig config;
    config.clickIntervalSeconds = 0.001;
    config.maxClicks = -4;
    store.saveConfig(config);
    EXPECT_EQ(store.loadConfig(), config);
}

TEST_F(PresetStoreTest, ConfigurationWithoutAJsonFormLeavesTheStoredOne) {
    store.saveConfig(samples::fullConfig());
    const int before = preferences.writes;
    for (const double value : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        AutoClickerConfig config;
        config.clickIntervalSeconds = value;
        store.saveConfig(config);
    }
    AutoClickerConfig badText;
    badText.hotkey = HotkeyCombo{0x40000, 1, "\xC3"};
    store.saveConfig(badText);
    EXPECT_EQ(preferences.writes, before);
    EXPECT_EQ(store.loadConfig(), samples::fullConfig());
}

TEST_F(PresetStoreTest, FailingSaveIsSilentAndLosesNothing) {
    store.saveConfig(samples::fullConfig());
    const std::vector<Preset> presets = twoPresets();
    store.savePresets(presets);
    preferences.isReadOnly = true;
    store.saveConfig(AutoClickerConfig());
    store.savePresets({});
    EXPECT_EQ(store.loadConfig(), samples::fullConfig());
    EXPECT_EQ(store.loadPresets(), presets);
    EXPECT_TRUE(platform.journal.empty());
}

TEST_F(PresetStoreTest, PresetsAreStoredInOrderAsACompactArray) {
    const std::vector<Preset> presets = twoPresets();
    store.savePresets(presets);
    EXPECT_EQ(preferences.written, std::vector<std::string>{presetsKey});
    EXPECT_EQ(stored(presetsKey).front(), '[');
    EXPECT_EQ(stored(presetsKey).find('\n'), std::string::npos);
    EXPECT_EQ(store.loadPresets(), presets);
}

TEST_F(PresetStoreTest, SavingReplacesTheWholeList) {
    store.savePresets(twoPresets());
    store.savePresets({});
    EXPECT_EQ(stored(presetsKey), "[]");
    EXPECT_TRUE(store.loadPresets().empty());
}

TEST_F(PresetStoreTest, OneBadPresetMakesTheWholeListUnreadable) {
    const std::vector<std::string> lists{
        listWithBadSecond([](json::Value& preset) { preset.erase("createdAt"); }),
        listWithBadSecond([](json::Value& preset) { preset["createdAt"] = "2026-05-23T10:00:00Z"; }),
        listWithBadSecond([](json::Value& preset) { preset["config"]["stopMode"] = "after"; }),
        listWithBadSecond([](json::Value& preset) { preset = nullptr; }),
    };
    for (const std::string& list : lists) {
        preferences.values[presetsKey] = Bytes(list);
        EXPECT_TRUE(store.loadPresets().empty()) << list;
        EXPECT_EQ(stored(presetsKey), list);
    }
    preferences.values[presetsKey] = Bytes(listWithBadSecond([](json::Value&) {}));
    EXPECT_EQ(store.loadPresets().size(), 2U) << "the list itself is good";
}

TEST_F(PresetStoreTest, PresetsUnderNamesAreNoList) {
    store.savePresets({Preset::make("Work", AutoClickerConfig())});
    const std::string list = stored(presetsKey);
    preferences.values[presetsKey] = Bytes("{\"first\":" + list.substr(1, list.size() - 2) + "}");
    EXPECT_TRUE(store.loadPresets().empty());
}

TEST_F(PresetStoreTest, CorruptPresetsGiveNone) {
    for (const char* bytes : {"", "[", "null", "{}", "7", "[1]", "[[]]"}) {
        preferences.values[presetsKey] = Bytes(bytes);
        EXPECT_TRUE(store.loadPresets().empty()) << bytes;
    }
    preferences.values[presetsKey] = encode(twoPresets().front()).dump();
    EXPECT_TRUE(store.loadPresets().empty()) << "one preset is not a list";
}

TEST_F(PresetStoreTest, PresetsWithoutAJsonFormLeaveTheStoredOnes) {
    const std::vector<Preset> presets = twoPresets();
    store.savePresets(presets);
    std::vector<Preset> bad = presets;
    bad[1].createdAt = Date(std::numeric_limits<double>::infinity());
    store.savePresets(bad);
    bad = presets;
    bad[0].name = "\xFF";
    store.savePresets(bad);
    EXPECT_EQ(store.loadPresets(), presets);
}

TEST_F(PresetStoreTest, ExportIsIndentedWithSortedKeysAndComesBackEqual) {
    const auto bytes = store.exportConfig(samples::fullConfig());
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes.value(), R"({
  "clickIntervalSeconds": 0.25,
  "hotkey": {
    "display": "⌃⌥S",
    "keyCode": 1,
    "modifierFlagsRaw": 786432
  },
  "maxClicks": 42,
  "minimizeToTray": true,
  "mouseButton": "middle",
  "playClickSound": true,
  "requireStationaryMouse": true,
  "startDelaySeconds": 1.5,
  "stationarySeconds": 2.5,
  "stopMode": "manual"
})");
    const auto imported = store.importConfig(bytes.value());
    ASSERT_TRUE(imported);
    EXPECT_EQ(imported.value(), samples::fullConfig());
    EXPECT_EQ(preferences.writes, 0);
}

TEST_F(PresetStoreTest, ExportOfWhatHasNoJsonFormFails) {
    AutoClickerConfig config;
    config.stationarySeconds = std::numeric_limits<double>::quiet_NaN();
    const auto bytes = store.exportConfig(config);
    ASSERT_FALSE(bytes);
    EXPECT_FALSE(bytes.error().message.empty());
}

TEST_F(PresetStoreTest, ImportTakesOneConfigurationAlone) {
    const json::Value preset = encode(twoPresets().front());
    for (const std::string& bytes :
         {std::string("[]"), std::string(), std::string("not json"), preset.dump(), json::Value::array({preset}).dump(),
          json::Value::array({encode(samples::fullConfig())}).dump()}) {
        EXPECT_FALSE(store.importConfig(bytes)) << bytes;
    }
    EXPECT_EQ(store.importConfig("[]").error().message, "not an object");
    EXPECT_EQ(store.importConfig("{").error().message, "not a JSON text");
}

#ifndef VELLORAN_SANITIZED
TEST_F(PresetStoreTest, WhatIsNoPartOfAConfigurationTakesNoMemory) {
    constexpr std::size_t length = std::size_t{8} * 1024 * 1024;
    const std::string file = store.exportConfig(samples::fullConfig()).value();
    std::string texts = "[\"\"";
    while (texts.size() < length) {
        texts += ",\"\"";
    }
    texts += ']';
    const std::string nested = std::string(length / 2, '[') + std::string(length / 2, ']');
    for (const std::string* const extra : {&std::as_const(texts), &nested}) {
        std::string withExtra = file;
        withExtra.insert(1, "\"extra\": " + *extra + ",");
        const auto importIt = [&] {
            const rlimit limit{20 * length, 20 * length};
            const bool isLimited = setrlimit(RLIMIT_AS, &limit) == 0;
            const auto imported = store.importConfig(withExtra);
            _exit(isLimited && imported && imported.value() == samples::fullConfig() ? 0 : 1);
        };
        EXPECT_EXIT(importIt(), testing::ExitedWithCode(0), "");
    }
}
#endif

TEST_F(PresetStoreTest, DeepNestingIsNoTrouble) {
    constexpr std::size_t depth = 1'000'000;
    const std::string nested = std::string(depth, '[') + std::string(depth, ']');
    EXPECT_FALSE(store.importConfig(nested));
    EXPECT_FALSE(store.importConfig(std::string(depth, '[')));
    std::string file = store.exportConfig(samples::fullConfig()).value();
    file.insert(1, "\"extra\": " + nested + ",");
    const auto imported = store.importConfig(file);
    ASSERT_TRUE(imported) << imported.error().message;
    EXPECT_EQ(imported.value(), samples::fullConfig());
}

} // namespace velloran
