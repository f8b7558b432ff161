#include "presets/Preset.h"

#include "fakes/RecordingPlatform.h"
#include "model/SampleConfig.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace velloran {

namespace {

class PresetTest : public testing::Test {
protected:
    fakes::RecordingPlatform platform;
};

json::Value parsed(const std::string& text) {
    const auto value = json::parse(text);
    EXPECT_TRUE(value) << text;
    return value ? value.value() : json::Value();
}

Preset sample() {
    return {*Uuid::fromText("0123456A-89ab-4CDE-8f01-23456789ABCD"), "Mine", samples::fullConfig(),
            Date(801234567.123456)};
}

Result<Preset> decodedWith(const std::string& key, const std::string& text) {
    json::Value object = encode(sample());
    object[key] = parsed(text);
    return decodePreset(object);
}

Preset throughText(const Preset& preset) {
    const auto bytes = json::write(encode(preset), json::Layout::compact);
    EXPECT_TRUE(bytes);
    auto decoded = decodePreset(parsed(bytes.value()));
    EXPECT_TRUE(decoded) << decoded.error().message;
    return decoded ? std::move(decoded).value() : Preset{};
}

} // namespace

TEST_F(PresetTest, NewOneHasAFreshIdentifierAndTheTime) {
    const Preset first = Preset::make("One", samples::fullConfig());
    EXPECT_EQ(first.name, "One");
    EXPECT_EQ(first.config, samples::fullConfig());
    EXPECT_EQ(first.createdAt, platform.loop.now());
    platform.loop.advance(1.5);
    const Preset second = Preset::make("One", samples::fullConfig());
    EXPECT_NE(first.id, second.id);
    EXPECT_EQ(second.createdAt - first.createdAt, 1.5);
}

TEST_F(PresetTest, EqualityTakesAllFourFields) {
    const Preset whole = sample();
    EXPECT_EQ(whole, sample());
    Preset other = sample();
    other.id = Uuid::random();
    EXPECT_NE(other, whole);
    other = sample();
    other.createdAt = other.createdAt + 0.001;
    EXPECT_NE(other, whole);
    other = sample();
    other.name = "mine";
    EXPECT_NE(other, whole);
    other = sample();
    other.config.playClickSound = false;
    EXPECT_NE(other, whole);
}

TEST_F(PresetTest, BuiltInsAreTheThree) {
    AutoClickerConfig steady;
    steady.clickIntervalSeconds = 1.0;
    AutoClickerConfig rapid;
    rapid.clickIntervalSeconds = 0.1;
    rapid.maxClicks = 500;
    rapid.startDelaySeconds = 1.0;
    AutoClickerConfig afk;
    afk.clickIntervalSeconds = 30.0;
    afk.stopMode = StopMode::manual;
    afk.maxClicks.reset();
    afk.startDelaySeconds = 3.0;
    afk.requireStationaryMouse = true;
    afk.stationarySeconds = 5.0;

    const auto& builtIns = Preset::builtIns();
    ASSERT_EQ(builtIns.size(), 3U);
    EXPECT_EQ(builtIns[0].name, "Steady — 1 click/sec, 100 clicks");
    EXPECT_EQ(builtIns[0].config, steady);
    EXPECT_EQ(builtIns[1].name, "Rapid — 0.10s, 500 clicks");
    EXPECT_EQ(builtIns[1].config, rapid);
    EXPECT_EQ(builtIns[2].name, "AFK — every 30s, manual stop");
    EXPECT_EQ(builtIns[2].config, afk);
    for (const Preset& preset : builtIns) {
        EXPECT_TRUE(preset.config.isValid()) << preset.name;
    }
}

TEST_F(PresetTest, BuiltInsAreBuiltOnce) {
    const std::vector<Preset> first = Preset::builtIns();
    platform.loop.advance(60.0);
    EXPECT_EQ(Preset::builtIns(), first);
    std::set<Uuid> ids;
    for (const Preset& preset : first) {
        ids.insert(preset.id);
        EXPECT_EQ(preset.createdAt, first.front().createdAt);
    }
    EXPECT_EQ(ids.size(), 3U);
    EXPECT_FALSE(ids.contains(Uuid()));
}

TEST_F(PresetTest, JsonHasFourMembers) {
    const json::Value object = encode(sample());
    EXPECT_EQ(object.size(), 4U);
    EXPECT_EQ(object.at("id"), "0123456A-89AB-4CDE-8F01-23456789ABCD");
    EXPECT_EQ(object.at("name"), "Mine");
    EXPECT_EQ(object.at("config"), encode(samples::fullConfig()));
    EXPECT_TRUE(object.at("createdAt").is_number());
    EXPECT_EQ(object.at("createdAt"), 801234567.123456);
}

TEST_F(PresetTest, IdentifierIsReadInEitherCase) {
    for (const char* text : {"\"0123456A-89AB-4CDE-8F01-23456789ABCD\"", "\"0123456a-89ab-4cde-8f01-23456789abcd\""}) {
        const auto decoded = decodedWith("id", text);
        ASSERT_TRUE(decoded) << text;
        EXPECT_EQ(decoded.value(), sample());
    }
}

TEST_F(PresetTest, EveryMemberIsRequired) {
    for (const char* key : {"id", "name", "config", "createdAt"}) {
        json::Value object = encode(sample());
        ASSERT_EQ(object.erase(key), 1U);
        EXPECT_FALSE(decodePreset(object)) << key;
    }
}

TEST_F(PresetTest, WrongTypesAndValuesFailForEveryMember) {
    const std::map<std::string, std::vector<std::string>> wrong{
        {"id",
         {"null", "1", "true", "\"\"", "\"0123456A89AB4CDE8F0123456789ABCD\"",
          "\"{0123456A-89AB-4CDE-8F01-23456789ABCD}\"", "\"0123456A-89AB-4CDE-8F01-23456789ABCG\"",
          "\"0123456A-89AB-4CDE-8F01-23456789ABC\"", "[]", "{}"}},
        {"name", {"null", "1", "false", "[]", "{}"}},
        {"config", {"null", "1", "\"\"", "[]", "{}"}},
        {"createdAt", {"null", "true", "\"2026-05-23T10:00:00Z\"", "\"801234567.25\"", "[]", "{}"}},
    };
    for (const auto& [key, texts] : wrong) {
        for (const std::string& text : texts) {
            EXPECT_FALSE(decodedWith(key, text)) << key << ": " << text;
        }
    }
}

TEST_F(PresetTest, BadConfigurationInsideFails) {
    json::Value object = encode(sample());
    object["config"].erase("playClickSound");
    EXPECT_FALSE(decodePreset(object));
}

TEST_F(PresetTest, UnknownMembersAreIgnored) {
    const auto decoded = decodedWith("version", "3");
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded.value(), sample());
}

TEST_F(PresetTest, OnlyAnObjectIsRead) {
    for (const char* text : {"null", "[]", "{}", "1", "\"Mine\""}) {
        EXPECT_FALSE(decodePreset(parsed(text))) << text;
    }
}

TEST_F(PresetTest, WholeSecondsAreReadAsADate) {
    EXPECT_EQ(decodedWith("createdAt", "0").value().createdAt, Date(0.0));
    EXPECT_EQ(decodedWith("createdAt", "-86400").value().createdAt, Date(-86400.0));
}

TEST_F(PresetTest, NamesComeBackAsTheyAre) {
    for (const char* name : {"", "  spaced  ", "\"quoted\" \\ / \b\f\n\r\t\x01\x7f", "⌃⌥S — «é» 😀", "line\nbreak"}) {
        Preset preset = sample();
        preset.name = name;
        EXPECT_EQ(throughText(preset), preset);
    }
}

TEST_F(PresetTest, AnyDateComesBackToTheBit) {
    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> recent(7e8, 9e8);
    for (int round = 0; round < 20'000; ++round) {
        Preset preset = sample();
        preset.createdAt = Date(round % 2 == 0 ? recent(random) : samples::anyReal(random));
        const Preset read = throughText(preset);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(read.createdAt.secondsSinceReference()),
                  std::bit_cast<std::uint64_t>(preset.createdAt.secondsSinceReference()));
        ASSERT_EQ(read, preset);
    }
    Preset negativeZero = sample();
    negativeZero.createdAt = Date(-0.0);
    EXPECT_TRUE(std::signbit(throughText(negativeZero).createdAt.secondsSinceReference()));
}

} // namespace velloran
