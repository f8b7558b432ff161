#include "harness/observer/Options.h"

#include <gtest/gtest.h>

namespace velloran::observer {

TEST(ObserverOptions, AreReadInAnyOrder) {
    const Options options = readOptions({"--expect", "200", "--interval", "0.05", "--raw", "--window", "10,-20,300,40",
                                         "--display", ":7", "--timeout", "1.5", "--report", "x.json"});
    EXPECT_EQ(options.error, "");
    EXPECT_EQ(options.expectedClicks, 200U);
    EXPECT_EQ(options.nominalInterval, 0.05);
    EXPECT_TRUE(options.listensToServer);
    ASSERT_TRUE(options.window.has_value());
    EXPECT_EQ(options.window->x, 10);
    EXPECT_EQ(options.window->y, -20);
    EXPECT_EQ(options.window->width, 300);
    EXPECT_EQ(options.window->height, 40);
    EXPECT_EQ(options.display, ":7");
    EXPECT_EQ(options.timeout, 1.5);
    EXPECT_EQ(options.reportFile, "x.json");
}

TEST(ObserverOptions, RefuseNonsense) {
    const std::vector<std::vector<std::string>> wrong{
        {"--nonsense"},          {"--expect"},          {"--expect", "-1", "--raw"},
        {"--expect", "5"},       {"--window", "1,2,3"}, {"--window", "1,2,3,4,5"},
        {"--window", "1,2,0,4"}, {"--interval", "-1"},  {"--interval", "soon"},
        {"--button", "x"}};
    for (const auto& arguments : wrong) {
        EXPECT_NE(readOptions(arguments).error, "") << arguments.front();
    }
}

} // namespace velloran::observer
