#include "base/strictJson.h"

#include <gtest/gtest.h>

#include <limits>

namespace velloran::json {

namespace {

Value parsed(const std::string& text) {
    auto value = parse(text);
    EXPECT_TRUE(value) << text;
    return value ? value.value() : Value();
}

} // namespace

TEST(StrictJson, LeavesOutOfARecordWhatLiesDeeper) {
    const char* const text = R"({"a":1,"b":{"c":[1,[2],{}],"d":{"e":null},"f":-2.5},"g":[],"h":"x","b2":{},"i":true})";
    const auto record = [](const std::string& from, std::size_t depth) {
        auto value = parseRecord(from, depth);
        EXPECT_TRUE(value) << from;
        return value ? value.value().dump() : "";
    };
    EXPECT_EQ(record(text, 1), R"({"a":1,"b":{},"b2":{},"g":[],"h":"x","i":true})");
    EXPECT_EQ(record(text, 2), R"({"a":1,"b":{"c":[],"d":{},"f":-2.5},"b2":{},"g":[],"h":"x","i":true})");
    EXPECT_EQ(record(R"({"a":{"b":1},"a":2,"c":{"d":1},"c":{"e":2}})", 2), R"({"a":2,"c":{"e":2}})") << "the last one";
    EXPECT_EQ(record("[1,{\"a\":[2]}]", 2), "[]");
    for (const char* plain : {"null", "true", "-1", "18446744073709551615", "1.5", "\"text\""}) {
        EXPECT_EQ(record(plain, 2), plain);
    }
}

TEST(StrictJson, ChecksWhatItLeavesOut) {
    for (const char* text : {"", "{", "[1,]", "[[[}]]", "{\"a\":[nul]}", "{\"a\":[\"\xFF\"]}", "{\"a\":[1e999]}",
                             "{} {}", "{\"a\":{\"b\":{\"c\":{1:2}}}}"}) {
        EXPECT_FALSE(parseRecord(text, 2)) << text;
    }
}

TEST(StrictJson, ParsesOneWholeValue) {
    EXPECT_EQ(parsed("[1]"), Value::array({1}));
    for (const char* text : {"", "{", "[1] [2]", "[1,]", "nul", "\"\xFF\"", "{\"a\":1e999}", "'a'"}) {
        EXPECT_FALSE(parse(text)) << text;
    }
}

TEST(StrictJson, BooleansAndNumbersAreNotEachOther) {
    EXPECT_EQ(asBoolean(parsed("true")), true);
    EXPECT_EQ(asBoolean(parsed("1")), std::nullopt);
    EXPECT_EQ(asReal(parsed("true")), std::nullopt);
    EXPECT_EQ(asReal(parsed("1")), 1.0);
    EXPECT_EQ(asReal(parsed("\"1\"")), std::nullopt);
    EXPECT_EQ(asInteger<std::int64_t>(parsed("false")), std::nullopt);
    EXPECT_EQ(asText(parsed("1")), std::nullopt);
    EXPECT_EQ(asText(parsed("null")), std::nullopt);
}

TEST(StrictJson, IntegersAreWholeAndFit) {
    EXPECT_EQ(asInteger<std::int64_t>(parsed("100.0")), 100);
    EXPECT_EQ(asInteger<std::int64_t>(parsed("1e2")), 100);
    EXPECT_EQ(asInteger<std::int64_t>(parsed("1.5")), std::nullopt);
    EXPECT_EQ(asInteger<std::int64_t>(parsed("9223372036854775807")), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(asInteger<std::int64_t>(parsed("9223372036854775808")), std::nullopt);
    EXPECT_EQ(asInteger<std::int64_t>(parsed("9223372036854775808.0")), std::nullopt);
    EXPECT_EQ(asInteger<std::int64_t>(parsed("-9223372036854775808")), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(asInteger<std::int64_t>(parsed("-9223372036854775809")), std::nullopt);
    EXPECT_EQ(asInteger<std::int64_t>(parsed("1e30")), std::nullopt);
    EXPECT_EQ(asInteger<std::uint32_t>(parsed("4294967295")), 4294967295U);
    EXPECT_EQ(asInteger<std::uint32_t>(parsed("4294967296")), std::nullopt);
    EXPECT_EQ(asInteger<std::uint32_t>(parsed("4294967296.0")), std::nullopt);
    EXPECT_EQ(asInteger<std::uint32_t>(parsed("-1")), std::nullopt);
    EXPECT_EQ(asInteger<std::uint32_t>(parsed("-1.0")), std::nullopt);
    EXPECT_EQ(asInteger<std::uint64_t>(parsed("18446744073709551615")), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(asInteger<std::uint64_t>(parsed("18446744073709551616")), std::nullopt);
}

TEST(StrictJson, ReaderKeepsTheFirstFailure) {
    const Value object = parsed(R"({"a": 1, "b": "x", "c": null})");
    double a = 0.0;
    double b = 7.0;
    std::optional<double> c = 3.0;
    std::optional<double> d = 4.0;
    ObjectReader reader(object);
    reader.required("a", a, asReal);
    reader.optional("c", c, asReal);
    reader.optional("d", d, asReal);
    EXPECT_FALSE(reader.failure());
    EXPECT_EQ(a, 1.0);
    EXPECT_EQ(c, std::nullopt);
    EXPECT_EQ(d, std::nullopt);
    reader.required("b", b, asReal);
    reader.required("missing", b, asReal);
    ASSERT_TRUE(reader.failure());
    EXPECT_EQ(reader.failure()->message, "b has the wrong type or value");
    EXPECT_EQ(b, 7.0);
}

TEST(StrictJson, ReaderRefusesWhatIsNoObject) {
    double a = 0.0;
    std::optional<double> b;
    const Value array = Value::array();
    ObjectReader reader(array);
    reader.required("a", a, asReal);
    reader.optional("b", b, asReal);
    EXPECT_TRUE(reader.failure());
}

TEST(StrictJson, OptionalOfTheWrongTypeFails) {
    const Value object = parsed(R"({"a": "1"})");
    std::optional<double> a;
    ObjectReader reader(object);
    reader.optional("a", a, asReal);
    EXPECT_TRUE(reader.failure());
}

TEST(StrictJson, WritesCompactAndPretty) {
    const Value object = parsed(R"({"b": 7.0, "a": [1, "⌃"]})");
    EXPECT_EQ(write(object, Layout::compact).value(), R"({"a":[1,"⌃"],"b":7.0})");
    EXPECT_EQ(write(object, Layout::pretty).value(), "{\n  \"a\": [\n    1,\n    \"⌃\"\n  ],\n  \"b\": 7.0\n}");
}

TEST(StrictJson, WhatHasNoJsonFormIsNotWritten) {
    EXPECT_FALSE(write(Value(std::numeric_limits<double>::quiet_NaN()), Layout::compact));
    EXPECT_FALSE(write(Value{{"a", std::numeric_limits<double>::infinity()}}, Layout::compact));
    EXPECT_FALSE(write(Value::array({"\xFF"}), Layout::compact));
    EXPECT_FALSE(write(Value{{"\xFF", 1}}, Layout::compact));
}

} // namespace velloran::json
