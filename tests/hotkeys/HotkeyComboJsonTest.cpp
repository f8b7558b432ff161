#include "hotkeys/HotkeyCombo.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace velloran {

namespace {

const HotkeyCombo sample{0xC0000, 1, "⌃⌥S"};

json::Value parsed(const std::string& text) {
    const auto value = json::parse(text);
    EXPECT_TRUE(value) << text;
    return value ? value.value() : json::Value();
}

std::optional<HotkeyCombo> decodedWith(const std::string& key, const std::string& text) {
    json::Value object = encode(sample);
    object[key] = parsed(text);
    return decodeHotkeyCombo(object);
}

} // namespace

TEST(HotkeyComboJson, HasThreeMembers) {
    EXPECT_EQ(encode(sample), parsed(R"({"modifierFlagsRaw": 786432, "keyCode": 1, "display": "⌃⌥S"})"));
    const auto bytes = json::write(encode(sample), json::Layout::compact);
    ASSERT_TRUE(bytes);
    EXPECT_NE(bytes.value().find("\"⌃⌥S\""), std::string::npos) << "glyphs are written as they are: " << bytes.value();
}

TEST(HotkeyComboJson, ComesBackEqual) {
    const HotkeyCombo extreme{~std::uint64_t{0}, ~std::uint32_t{0}, ""};
    for (const HotkeyCombo& combo : {sample, extreme, HotkeyCombo{0, 0, "\"\\\u0001\n😀"}}) {
        const auto bytes = json::write(encode(combo), json::Layout::compact);
        ASSERT_TRUE(bytes);
        EXPECT_EQ(decodeHotkeyCombo(parsed(bytes.value())), combo);
    }
}

TEST(HotkeyComboJson, MissingMembersFail) {
    for (const char* key : {"modifierFlagsRaw", "keyCode", "display"}) {
        json::Value object = encode(sample);
        ASSERT_EQ(object.erase(key), 1U);
        EXPECT_EQ(decodeHotkeyCombo(object), std::nullopt) << key;
    }
}

TEST(HotkeyComboJson, WrongTypesAndValuesFailForEveryMember) {
    const std::map<std::string, std::vector<std::string>> wrong{
        {"modifierFlagsRaw",
         {"null", "true", "\"1\"", "1.5", "-1", "-1.0", "18446744073709551616", "1e20", "[]", "{}"}},
        {"keyCode", {"null", "false", "\"1\"", "1.5", "-1", "-0.5", "4294967296", "4294967296.0", "[1]", "{}"}},
        {"display", {"null", "true", "1", "[]", "{}", "[\"a\"]"}},
    };
    for (const auto& [key, texts] : wrong) {
        for (const std::string& text : texts) {
            EXPECT_EQ(decodedWith(key, text), std::nullopt) << key << ": " << text;
        }
    }
}

TEST(HotkeyComboJson, WholeNumbersThatFitAreTaken) {
    EXPECT_EQ(decodedWith("keyCode", "4294967295")->keyCode, 4294967295U);
    EXPECT_EQ(decodedWith("keyCode", "100.0")->keyCode, 100U);
    EXPECT_EQ(decodedWith("modifierFlagsRaw", "18446744073709551615")->modifierFlagsRaw, ~std::uint64_t{0});
}

TEST(HotkeyComboJson, UnknownMembersAreIgnored) {
    EXPECT_EQ(decodedWith("extra", "[1]"), sample);
}

TEST(HotkeyComboJson, OnlyAnObjectIsRead) {
    for (const char* text : {"null", "[]", "{}", "\"⌃⌥S\"", "1", "true"}) {
        EXPECT_EQ(decodeHotkeyCombo(parsed(text)), std::nullopt) << text;
    }
}

TEST(HotkeyComboJson, TextThatIsNotUtf8HasNoJsonForm) {
    EXPECT_FALSE(json::write(encode(HotkeyCombo{0, 0, "\xFF"}), json::Layout::compact));
}

} // namespace velloran
