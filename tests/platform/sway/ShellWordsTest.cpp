#include "platform/sway/shellWords.h"

#include <gtest/gtest.h>

#include <wordexp.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace velloran::platform::sway {
namespace {

using Texts = std::vector<std::string>;

const Variables environment{{"HOME", "/home/one"}, {"USER", "one"}, {"PLACE", "/a place"}, {"EMPTY", ""},
                            {"STAR", "*"},         {"ODD", "a\\b"}, {"TWO", " c d\t"}};

std::optional<Texts> texts(const std::string& line, const Variables& variables = environment) {
    const auto words = expandShellWords(line, variables);
    if (!words) {
        return std::nullopt;
    }
    Texts result;
    for (const ShellWord& word : *words) {
        result.push_back(word.text);
    }
    return result;
}

std::string pattern(const std::string& line) {
    const auto words = expandShellWords(line, environment);
    return words && words->size() == 1 ? words->front().pattern : "no single word";
}

/// What the system's own function makes of it, which may not be used beside other threads.
Texts textsOfSystem(const std::string& line) {
    for (const auto& [name, value] : environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    wordexp_t expanded{};
    Texts result;
    if (wordexp(line.c_str(), &expanded, WRDE_NOCMD) == 0) {
        result.assign(expanded.we_wordv, expanded.we_wordv + expanded.we_wordc);
        wordfree(&expanded);
    } else {
        result = {"not at all"};
    }
    return result;
}

TEST(ShellWordsTest, AreThoseOfTheSystem) {
    for (const char* const line : {"a",
                                   " a  b\tc ",
                                   "",
                                   "a\\ b",
                                   "'a b'\\''c'",
                                   "\"a b\" c",
                                   "\"\" ''",
                                   "a\"b\"'c'd",
                                   "\"\\a\\$\\\"\\\\\\`\"",
                                   "~",
                                   "~/a ~",
                                   "a~ \"~\" '~'",
                                   "$PLACE",
                                   "\"$PLACE\"/b",
                                   "${PLACE}x",
                                   "$PLACEx",
                                   "x$EMPTY",
                                   "$EMPTY",
                                   "'$PLACE'",
                                   "\\$PLACE",
                                   "${NONE:-a b}",
                                   "\"${NONE:-a b}\"",
                                   "${NONE-$PLACE/x}",
                                   "${EMPTY:-a}",
                                   "x${EMPTY-a}",
                                   "${PLACE:+a}",
                                   "x${NONE:+a}",
                                   "${NONE:-~/a}",
                                   "${NONE:-${EMPTY:-a}b}c",
                                   "${PLACE:-$NONE}",
                                   "a$",
                                   "\"a$\"",
                                   "/no-such/[a-b]*?",
                                   "/no-such/\\*",
                                   "a-b_c.d/e,f:g@h%i+j=k",
                                   "${PLACE:?no}",
                                   "\"a\\\nb\" a\\\nb"}) {
        EXPECT_EQ(texts(line), textsOfSystem(line)) << line;
    }
}

TEST(ShellWordsTest, AreNoneWhereTheSystemHasNoneEither) {
    for (const char* const line : {"'a", "\"a", "\"a'", "a\\", "${PLACE", "${", "${}", "a|b", "a&b", "a;b", "<a", "a>b",
                                   "(a)", "{a,b}", "a\nb", "$(touch a)", "a`touch b`", "\"$(a)\"", "\"`a`\""}) {
        EXPECT_EQ(texts(line), std::nullopt) << line;
        EXPECT_EQ(textsOfSystem(line), Texts{"not at all"}) << line;
    }
}

TEST(ShellWordsTest, WhatOnlyThatShellKnowsIsNotGuessed) {
    for (const char* const line : {"$((1+1))", "$[1]", "$$", "$?", "$1", "$@", "$*", "$#", "$!", "$-", "${#PLACE}",
                                   "${PLACE#/}", "${PLACE%e}", "${1:-a}", "${PLACE/a/b}", "${NONE:?}", "${NONE?why}"}) {
        EXPECT_EQ(texts(line), std::nullopt) << line;
    }
    EXPECT_EQ(texts("~", {}), std::nullopt);
    EXPECT_EQ(texts(std::string("a\0b", 3)), std::nullopt);
    EXPECT_EQ(texts(std::string("'\0'", 3)), std::nullopt);
    EXPECT_EQ(texts("~one/a ~other/b"), (Texts{"/home/one/a", "~other/b"}));
    EXPECT_EQ(texts("~one/a", {{"LOGNAME", "one"}, {"HOME", "/h"}}), Texts{"/h/a"});
    EXPECT_EQ(texts("~\"one\"/a"), Texts{"~one/a"});
}

TEST(ShellWordsTest, AValueMayBeNoneOneOrSeveral) {
    EXPECT_EQ(texts("x${TWO}y"), (Texts{"x", "c", "d", "y"}));
    EXPECT_EQ(texts("$TWO$TWO"), (Texts{"c", "d", "c", "d"}));
    EXPECT_EQ(texts("\"$TWO\""), Texts{" c d\t"});
    EXPECT_EQ(texts("\"$EMPTY\""), Texts{""});
    EXPECT_EQ(texts("$EMPTY$NONE"), Texts{});
}

TEST(ShellWordsTest, OnlyWhatIsNotQuotedIsAPattern) {
    EXPECT_EQ(pattern("a*[b-c]?"), "a*[b-c]?");
    EXPECT_EQ(pattern("'*'\"?\"\\["), "\\*\\?\\[");
    EXPECT_EQ(pattern("$STAR"), "*") << "as in a shell";
    EXPECT_EQ(pattern("\"$STAR\""), "\\*");
    EXPECT_EQ(pattern("$ODD"), "a\\\\b");
    EXPECT_EQ(pattern("[a'-'z]"), "[a\\-z]");
    EXPECT_EQ(literalPattern("/a b/[c]*"), "/a b/\\[c\\]\\*");
}

TEST(ShellWordsTest, NothingGrowsBeyondAllMeasure) {
    const Variables large{{"A", std::string(40000, 'a')}};
    EXPECT_TRUE(texts("$A", large).has_value());
    EXPECT_EQ(texts("$A$A", large), std::nullopt);
    std::string nested = "x";
    for (int i = 0; i < 1000; ++i) {
        nested = "${NONE:-" + nested + "}";
    }
    EXPECT_EQ(texts(nested), std::nullopt);
}

} // namespace
} // namespace velloran::platform::sway
