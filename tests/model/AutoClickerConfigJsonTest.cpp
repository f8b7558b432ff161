#include "model/AutoClickerConfig.h"
#include "model/SampleConfig.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace velloran {

namespace {

using Texts = std::vector<std::string>;

json::Value parsed(const std::string& text) {
    const auto value = json::parse(text);
    EXPECT_TRUE(value) << text;
    return value ? value.value() : json::Value();
}

std::set<std::string> keys(const json::Value& object) {
    std::set<std::string> found;
    for (const auto& item : object.items()) {
        found.insert(item.key());
    }
    return found;
}

/// The JSON object of a whole record with one member's value replaced by `text`.
Result<AutoClickerConfig> decodedWith(const std::string& key, const std::string& text) {
    json::Value object = encode(samples::fullConfig());
    EXPECT_TRUE(object.contains(key)) << key;
    object[key] = parsed(text);
    return decodeAutoClickerConfig(object);
}

Result<AutoClickerConfig> decodedWithout(const std::string& key) {
    json::Value object = encode(samples::fullConfig());
    EXPECT_EQ(object.erase(key), 1U) << key;
    return decodeAutoClickerConfig(object);
}

const std::map<std::string, Texts>& wrongValues() {
    static const Texts noReals{"null", "true", "false", "\"1.0\"", "\"\"", "[]", "[1]", "{}"};
    static const Texts noBooleans{"null", "0", "1", "0.0", "\"true\"", "\"\"", "[]", "[true]", "{}"};
    static const std::map<std::string, Texts> values{
        {"mouseButton", {"null", "0", "true", "\"\"", "\"Left\"", "\"Left Click\"", "\"left \"", "[\"left\"]", "{}"}},
        {"clickIntervalSeconds", noReals},
        {"stopMode",
         {"null", "1", "false", "\"\"", "\"after\"", "\"afterClicks\"", "\"Manual\"", "[\"manual\"]", "{}"}},
        {"maxClicks", {"true", "false", "\"5\"", "1.5", "-0.5", "9223372036854775808", "1e30", "1e-3", "[]", "{}"}},
        {"startDelaySeconds", noReals},
        {"requireStationaryMouse", noBooleans},
        {"stationarySeconds", noReals},
        {"hotkey", {"true", "0", "\"⌃⌥S\"", "[]", "{}", R"({"keyCode": 1, "modifierFlagsRaw": 786432})"}},
        {"playClickSound", noBooleans},
        {"minimizeToTray", noBooleans},
    };
    return values;
}

} // namespace

TEST(AutoClickerConfigJson, KeysAreTheFieldNames) {
    const std::set<std::string> expected{
        "mouseButton",       "clickIntervalSeconds",   "stopMode",          "maxClicks",
        "startDelaySeconds", "requireStationaryMouse", "stationarySeconds", "hotkey",
        "playClickSound",    "minimizeToTray"};
    EXPECT_EQ(keys(encode(samples::fullConfig())), expected);
}

TEST(AutoClickerConfigJson, ValuesHaveTheirTypes) {
    EXPECT_EQ(encode(samples::fullConfig()), parsed(R"({
        "mouseButton": "middle", "clickIntervalSeconds": 0.25, "stopMode": "manual", "maxClicks": 42,
        "startDelaySeconds": 1.5, "requireStationaryMouse": true, "stationarySeconds": 2.5,
        "hotkey": {"modifierFlagsRaw": 786432, "keyCode": 1, "display": "⌃⌥S"},
        "playClickSound": true, "minimizeToTray": true})"));
    const json::Value defaults = encode(AutoClickerConfig());
    EXPECT_EQ(defaults.at("stopMode"), "after_clicks");
    EXPECT_TRUE(defaults.at("maxClicks").is_number_integer());
    EXPECT_TRUE(defaults.at("playClickSound").is_boolean());
}

TEST(AutoClickerConfigJson, RecordWithoutHotkeyAndCountHasEightKeysAndComesBackEqual) {
    AutoClickerConfig config = samples::fullConfig();
    config.hotkey.reset();
    config.maxClicks.reset();
    const json::Value object = encode(config);
    EXPECT_EQ(object.size(), 8U);
    EXPECT_FALSE(object.contains("hotkey"));
    EXPECT_FALSE(object.contains("maxClicks"));
    const auto decoded = decodeAutoClickerConfig(object);
    ASSERT_TRUE(decoded) << decoded.error().message;
    EXPECT_EQ(decoded.value(), config);
}

TEST(AutoClickerConfigJson, MissingOrNullOptionalsAreAbsent) {
    for (const char* key : {"maxClicks", "hotkey"}) {
        const auto without = decodedWithout(key);
        const auto withNull = decodedWith(key, "null");
        ASSERT_TRUE(without) << key;
        ASSERT_TRUE(withNull) << key;
        EXPECT_EQ(without.value(), withNull.value());
    }
    EXPECT_EQ(decodedWithout("maxClicks").value().maxClicks, std::nullopt);
    EXPECT_EQ(decodedWithout("hotkey").value().hotkey, std::nullopt);
}

TEST(AutoClickerConfigJson, EveryRequiredKeyIsRequired) {
    for (const auto& [key, values] : wrongValues()) {
        if (key != "maxClicks" && key != "hotkey") {
            EXPECT_FALSE(decodedWithout(key)) << key;
        }
    }
    EXPECT_EQ(decodedWithout("playClickSound").error().message, "playClickSound is missing");
}

TEST(AutoClickerConfigJson, WrongTypesAndValuesFailForEveryKey) {
    EXPECT_EQ(wrongValues().size(), encode(samples::fullConfig()).size());
    for (const auto& [key, values] : wrongValues()) {
        for (const std::string& text : values) {
            const auto decoded = decodedWith(key, text);
            EXPECT_FALSE(decoded) << key << ": " << text;
        }
    }
    EXPECT_EQ(decodedWith("stopMode", "\"after\"").error().message, "stopMode has the wrong type or value");
}

TEST(AutoClickerConfigJson, WholeNumbersAreTakenInEveryForm) {
    EXPECT_EQ(decodedWith("maxClicks", "100.0").value().maxClicks, 100);
    EXPECT_EQ(decodedWith("maxClicks", "1e2").value().maxClicks, 100);
    EXPECT_EQ(decodedWith("maxClicks", "-1").value().maxClicks, -1);
    EXPECT_EQ(decodedWith("maxClicks", "4294967296").value().maxClicks, 4294967296);
    EXPECT_EQ(decodedWith("maxClicks", "9223372036854775807").value().maxClicks, 9223372036854775807);
    EXPECT_EQ(decodedWith("clickIntervalSeconds", "7").value().clickIntervalSeconds, 7.0);
    EXPECT_EQ(decodedWith("clickIntervalSeconds", "18446744073709551615").value().clickIntervalSeconds, 0x1p64);
    EXPECT_EQ(decodedWith("startDelaySeconds", "-3").value().startDelaySeconds, -3.0);
    EXPECT_EQ(decodedWith("stationarySeconds", "1e-3").value().stationarySeconds, 0.001);
}

TEST(AutoClickerConfigJson, NumberBeyondADoubleIsNoJson) {
    EXPECT_FALSE(json::parse(R"({"clickIntervalSeconds": 1e999})"));
}

TEST(AutoClickerConfigJson, UnknownKeysAreIgnored) {
    json::Value object = encode(samples::fullConfig());
    object["version"] = 2;
    object["MouseButton"] = "left";
    object["hotkey"]["extra"] = nullptr;
    const auto decoded = decodeAutoClickerConfig(object);
    ASSERT_TRUE(decoded) << decoded.error().message;
    EXPECT_EQ(decoded.value(), samples::fullConfig());
}

TEST(AutoClickerConfigJson, OnlyAnObjectIsRead) {
    for (const char* text : {"null", "[]", "{}", "\"left\"", "1", "true"}) {
        EXPECT_FALSE(decodeAutoClickerConfig(parsed(text))) << text;
    }
    EXPECT_FALSE(decodeAutoClickerConfig(json::Value::array({encode(samples::fullConfig())})));
}

TEST(AutoClickerConfigJson, BoundsAreNotChecked) {
    const auto decoded = decodedWith("clickIntervalSeconds", "0.0");
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded.value().validationError(), "Click interval must be between 0.01 and 3600.0 seconds.");
}

TEST(AutoClickerConfigJson, WhatIsNotFiniteHasNoJsonForm) {
    for (const double value : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity()}) {
        for (double AutoClickerConfig::*const field :
             {&AutoClickerConfig::clickIntervalSeconds, &AutoClickerConfig::startDelaySeconds,
              &AutoClickerConfig::stationarySeconds}) {
            AutoClickerConfig config;
            config.*field = value;
            EXPECT_FALSE(json::write(encode(config), json::Layout::compact));
            EXPECT_FALSE(json::write(encode(config), json::Layout::pretty));
        }
    }
}

TEST(AutoClickerConfigJson, AnyRecordComesBackEqualFromEitherLayout) {
    std::mt19937_64 random(1);
    for (int round = 0; round < 5000; ++round) {
        const AutoClickerConfig config = samples::anyConfig(random);
        const auto bytes = json::write(encode(config), round % 2 == 0 ? json::Layout::compact : json::Layout::pretty);
        ASSERT_TRUE(bytes);
        const auto decoded = decodeAutoClickerConfig(parsed(bytes.value()));
        ASSERT_TRUE(decoded) << decoded.error().message << "\n" << bytes.value();
        ASSERT_EQ(decoded.value(), config) << bytes.value();
    }
}

} // namespace velloran
