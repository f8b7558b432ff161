#include "base/IniText.h"

#include <gtest/gtest.h>

namespace velloran {

TEST(IniText, HoldsNothingWhenEmpty) {
    EXPECT_EQ(IniText("").value("key"), std::nullopt);
    EXPECT_EQ(IniText("").text(), "");
}

TEST(IniText, WritesASectionOnce) {
    IniText text("");
    text.setValue("b", "1");
    text.setValue("a", "2");
    EXPECT_EQ(text.text(), "[General]\nb=1\na=2\n");
    text.setValue("b", "3");
    EXPECT_EQ(text.text(), "[General]\nb=3\na=2\n");
}

TEST(IniText, ReadsEntriesWithBlanksAroundThem) {
    const IniText text("[General]\n  key \t=  some value \r\nnext=\n");
    EXPECT_EQ(text.value("key"), "some value");
    EXPECT_EQ(text.value("next"), "");
    EXPECT_EQ(text.value("other"), std::nullopt);
}

TEST(IniText, ReadsEntriesInFrontOfAnySection) {
    const IniText text("key=1");
    EXPECT_EQ(text.value("key"), "1");
}

TEST(IniText, KeepsToItsSection) {
    const IniText text("[Other]\nkey=1\n[general]\nkey=2\n[Third]\nkey=3\n");
    EXPECT_EQ(text.value("key"), "2");
}

TEST(IniText, IgnoresComments) {
    const IniText text("[General]\n;key=1\n#key=2\n");
    EXPECT_EQ(text.value("key"), std::nullopt);
    EXPECT_EQ(text.value("#key"), std::nullopt);
}

TEST(IniText, TheLastOfSeveralEntriesCounts) {
    IniText text("[General]\nkey=1\nkey=2\n");
    EXPECT_EQ(text.value("key"), "2");
    text.setValue("key", "3");
    EXPECT_EQ(text.value("key"), "3");
    text.remove("key");
    EXPECT_EQ(text.value("key"), std::nullopt);
    EXPECT_EQ(text.text(), "[General]\n");
}

TEST(IniText, LeavesEveryOtherLineAsItIs) {
    const std::string before =
        "; mine\n[Other]\nkey=1\n\xff\xfe junk \n[General]\na=1\n\nno entry\n  b = \"x\"\n[Third]\nkey=3\n";
    IniText text(before);
    text.setValue("c", "2");
    text.remove("a");
    EXPECT_EQ(text.text(),
              "; mine\n[Other]\nkey=1\n\xff\xfe junk \n[General]\n\nno entry\n  b = \"x\"\nc=2\n[Third]\nkey=3\n");
}

TEST(IniText, PutsItsSectionInFrontOfOthers) {
    IniText text("[Other]\nkey=1\n");
    text.setValue("key", "2");
    EXPECT_EQ(text.text(), "[General]\nkey=2\n[Other]\nkey=1\n");
    EXPECT_EQ(text.value("key"), "2");
}

TEST(IniText, FindsItsOwnWhereTheNameOfTheSectionIsDamaged) {
    const std::string before = "front=1\n[Genesal]\nvelloran.config=2\nother=3\n[Third]\n donation.donated = true\n";
    IniText text(before);
    EXPECT_EQ(text.text(), before);
    EXPECT_EQ(text.value("velloran.config"), "2");
    EXPECT_EQ(text.value("donation.donated"), "true");
    EXPECT_EQ(text.value("other"), std::nullopt);
    text.setValue("new", "4");
    const std::string after =
        "[General]\nfront=1\nvelloran.config=2\n donation.donated = true\nnew=4\n[Genesal]\nother=3\n[Third]\n";
    EXPECT_EQ(text.text(), after);
    EXPECT_EQ(text.value("velloran.config"), "2");
    text.remove("velloran.config");
    text.setValue("next", "5");
    EXPECT_EQ(IniText(text.text()).value("donation.donated"), "true");
    EXPECT_EQ(IniText(text.text()).value("next"), "5");
    EXPECT_EQ(IniText(text.text()).value("velloran.config"), std::nullopt);
}

TEST(IniText, RemovesItsOwnWhereTheNameOfTheSectionIsDamaged) {
    IniText text("[Genesal]\nvelloran.config=1\nvelloran.config=2\n");
    text.remove("velloran.config");
    EXPECT_EQ(IniText(text.text()).value("velloran.config"), std::nullopt);
}

TEST(IniText, LeavesWhatIsNamedAsItsOwnToOtherSections) {
    const IniText text("[Other]\nvelloran.config=1\n[General]\nkey=2\n[Third]\nvelloran.config=3\n");
    EXPECT_EQ(text.value("velloran.config"), std::nullopt);
}

TEST(IniText, TakesAnyKey) {
    IniText text("");
    for (const char* const key : {"a=b", "[General]", ";c", "with blank", "line\nbreak", "\xc3\xa9", "50%", ""}) {
        text.setValue(key, "1");
        EXPECT_EQ(IniText(text.text()).value(key), "1") << key;
    }
}

TEST(IniText, RemovingWhatIsNotThereDoesNothing) {
    IniText text("[General]\na=1\n");
    text.remove("b");
    EXPECT_EQ(text.text(), "[General]\na=1\n");
}

TEST(IniText, GoesOnAfterARemoval) {
    IniText text("[General]\na=1\nb=2\n[Other]\n");
    text.remove("a");
    text.setValue("c", "3");
    EXPECT_EQ(text.text(), "[General]\nb=2\nc=3\n[Other]\n");
}

} // namespace velloran
