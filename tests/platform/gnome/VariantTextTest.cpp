#include "platform/gnome/variantText.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace velloran::platform::gnome {
namespace {

using Texts = std::vector<std::string>;

TEST(VariantTextTest, TextsAreReadAsTheToolPrintsThem) {
    for (const auto& [written, text] : std::vector<std::pair<std::string, std::string>>{
             {"''\n", ""},
             {"'<Control>F8'\n", "<Control>F8"},
             {R"("it's")", "it's"},
             {R"('both \' and "')", "both ' and \""},
             {R"('a\\b\n\tc\u00e4\U0001f409')", "a\\b\n\tc\u00e4\U0001f409"},
             {"'\u00e4\u20ac'", "\u00e4\u20ac"},
             {R"('\u20ac')", "\u20ac"}}) {
        EXPECT_EQ(readText(written), text) << written;
    }
}

TEST(VariantTextTest, WhatIsNoTextIsNone) {
    for (const std::string written :
         {"", "\n", "it", "'it", "'it\"", "'it' 'is'", "'it'x", "1", "['it']", "@s 'it'", R"('\)", R"('\x41')",
          R"('\u00')", R"('\u00g1')", R"('\ud800')", R"('\U00110000')", R"('\u0000')", R"('\u+123')"}) {
        EXPECT_EQ(readText(written), std::nullopt) << written;
    }
}

TEST(VariantTextTest, ListsAreReadAsTheToolPrintsThem) {
    EXPECT_EQ(readTextList("@as []\n"), Texts());
    EXPECT_EQ(readTextList("['/a/']\n"), Texts{"/a/"});
    EXPECT_EQ(readTextList(R"(['/a/', "it's", '/b/'])"), (Texts{"/a/", "it's", "/b/"}));
    EXPECT_EQ(readTextList("@as ['/a/','/b/']"), (Texts{"/a/", "/b/"}));
    EXPECT_EQ(readTextList("['[', ', ', ']']"), (Texts{"[", ", ", "]"}));
}

TEST(VariantTextTest, WhatIsNoListIsNone) {
    for (const std::string written :
         {"", "[]", "@as", "@as [", "'/a/'", "['/a/'", "['/a/',", "['/a/',]", "['/a/' '/b/']", "[, '/a/']", "['/a/']]",
          "['/a/'] x", "[1]", "[['/a/']]", "@ai []", "['/a/', 2]", "No such schema"}) {
        EXPECT_EQ(readTextList(written), std::nullopt) << written;
    }
}

TEST(VariantTextTest, WhatIsWrittenReadsBackAsTheSame) {
    for (const Texts& texts :
         {Texts(), Texts{""}, Texts{"/a/", "/b/"}, Texts{"it's", "a\\b", "\"", "two\nlines", "\u00e4"}}) {
        EXPECT_EQ(readTextList(writeTextList(texts)), texts);
    }
    EXPECT_EQ(writeTextList({"/a/", "it's"}), R"(['/a/', 'it\'s'])");
    EXPECT_EQ(writeTextList({}), "@as []") << "the tool takes nothing else for an empty one";
}

} // namespace
} // namespace velloran::platform::gnome
