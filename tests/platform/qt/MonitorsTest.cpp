#include "platform/qt/monitors.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velloran::platform::qt {

namespace {

double distance(Point a, Point b, const std::vector<Monitor>& monitors) {
    const Point from = pointsFromPixels(a, monitors);
    const Point to = pointsFromPixels(b, monitors);
    return std::hypot(to.x - from.x, to.y - from.y);
}

/// A monitor of the usual scale, and right of it, somewhat lower, one of twice that.
const std::vector<Monitor> two{{{0, 0}, 1200, 1700, 1.0}, {{1200, 100}, 1000, 800, 2.0}};

} // namespace

TEST(Monitors, APixelIsAPointAtTheUsualScale) {
    EXPECT_EQ(pointsFromPixels({300, 200}, two), (Point{300, 200}));
    EXPECT_EQ(pointsFromPixels({0, 0}, two), (Point{0, 0}));
    EXPECT_EQ(pointsFromPixels({1199, 1699}, two), (Point{1199, 1699}));
}

TEST(Monitors, PointsCountFromTheCornerOfTheMonitor) {
    EXPECT_EQ(pointsFromPixels({1200, 100}, two), (Point{1200, 100}));
    EXPECT_EQ(pointsFromPixels({3199, 1699}, two), (Point{2199.5, 899.5}));
    EXPECT_EQ(pointsFromPixels({-1900, 60}, {{{-1920, 0}, 768, 432, 2.5}}), (Point{-1912, 24}));
}

TEST(Monitors, TheFirstPixelsOfAMonitorAreItsOwn) {
    EXPECT_EQ(distance({1200, 500}, {1200, 504}, two), 2.0);
    EXPECT_EQ(distance({1199, 500}, {1199, 504}, two), 4.0);
}

TEST(Monitors, DistancesAreInPoints) {
    EXPECT_EQ(distance({600, 600}, {603, 604}, two), 5.0);
    EXPECT_EQ(distance({1600, 600}, {1603, 604}, two), 2.5);
    EXPECT_EQ(distance({100, 100}, {105, 100}, {{{0, 0}, 1024, 768, 1.25}}), 4.0);
}

TEST(Monitors, BesideAllOfThemTheNearestCounts) {
    EXPECT_EQ(distance({1600, 20}, {1600, 40}, two), 10.0) << "above the right one";
    EXPECT_EQ(distance({-30, 20}, {-30, 40}, two), 20.0) << "left of the left one";
    // Its size in points was rounded down: 853 points are less than 1280 pixels.
    EXPECT_EQ(distance({1279, 20}, {1279, 23}, {{{0, 0}, 853, 480, 1.5}}), 2.0);
}

TEST(Monitors, WithoutAnyAPixelIsAPoint) {
    EXPECT_EQ(pointsFromPixels({300, 200}, {}), (Point{300, 200}));
}

} // namespace velloran::platform::qt
