#include "platform/hyprland/reply.h"

#include <gtest/gtest.h>

#include <string>

namespace velloran::tests {

using platform::Point;
using platform::hyprland::placeIn;

TEST(HyprlandReplyTest, IsAPlaceInPoints) {
    EXPECT_EQ(placeIn("{\n    \"x\": 640,\n    \"y\": 400\n}\n"), (Point{640, 400}));
    EXPECT_EQ(placeIn(R"({"x": -1920, "y": 0})"), (Point{-1920, 0}));
    EXPECT_EQ(placeIn(R"({"x": 0.5, "y": 1e3, "of": "tomorrow"})"), (Point{0.5, 1000}));
}

TEST(HyprlandReplyTest, AnythingElseIsNone) {
    for (const char* const answer :
         {"", "unknown request", "ok", "640, 400", "null", "[640, 400]", "{}", R"({"x": 640})", R"({"y": 400})",
          R"({"x": "640", "y": "400"})", R"({"x": true, "y": 1})", R"({"x": null, "y": 1})", R"({"x": 1, "y": 2} {})",
          R"({"x": 1e999, "y": 2})", R"({"x": 1e10, "y": 2})", R"({"x": 1, "y": -1e10})",
          "{\"x\": 1, \"y\": 2, \"\xff\": 3}"}) {
        EXPECT_EQ(placeIn(answer), std::nullopt) << answer;
    }
}

TEST(HyprlandReplyTest, OneThatIsNotWholeYetIsNone) {
    const std::string answer = R"({"x": 640, "y": 400})";
    for (std::size_t length = 0; length < answer.size(); ++length) {
        EXPECT_EQ(placeIn(answer.substr(0, length)), std::nullopt) << length;
    }
    EXPECT_NE(placeIn(answer), std::nullopt);
}

} // namespace velloran::tests
