#include "harness/Stage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace velloran::test {
namespace {

constexpr double start = 20;
constexpr double end = 300;

QByteArray glowOn(const QByteArray& below) {
    return "Rectangle { anchors.fill: parent; color: \"" + below +
           "\" } Glow { objectName: \"glow\"; width: 300; height: 300; start: 20; color: \"#80ff8040\" }";
}

/// What the glow adds to a channel at a point, if its light has that much of it there.
double added(double strength, double x, double y) {
    return strength * std::clamp((end - std::hypot(x, y)) / (end - start), 0.0, 1.0);
}

TEST(Glow, AddsItsLightToEachPixelOnce) {
    Stage stage(glowOn("#102030"), {400, 400});
    const double scale = stage.window.effectiveDevicePixelRatio();
    const QImage picture = stage.grab();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const double across = (x + 0.5) / scale;
            const double down = (y + 0.5) / scale;
            const QRgb shown = picture.pixel(x, y);
            const auto isNear = [&](int channel, double below, double strength) {
                return std::abs(channel - (below + added(strength, across, down))) <= 1.5;
            };
            ASSERT_TRUE(isNear(qRed(shown), 0x10, 128) && isNear(qGreen(shown), 0x20, 128.0 * 0x80 / 255) &&
                        isNear(qBlue(shown), 0x30, 128.0 * 0x40 / 255))
                << x << ", " << y << ": " << QColor(shown).name().toStdString();
        }
    }
}

TEST(Glow, LooksTheSamePaintedInParts) {
    Stage stage(glowOn("black") + "Rectangle { objectName: \"cover\"; visible: false; color: \"white\" }", {400, 400});
    const QImage whole = stage.grab();
    QQuickItem& cover = stage.item("cover");
    // Over the edges of its strips and of the glow, and at places that are no whole pixels at every scale.
    for (const QRectF place : {QRectF(33, 95, 51, 21), QRectF(1, 1, 399, 211), QRectF(203, 205, 77, 99)}) {
        cover.setPosition(place.topLeft());
        cover.setSize(place.size());
        cover.setVisible(true);
        ASSERT_NE(stage.grab(), whole);
        cover.setVisible(false);
        EXPECT_EQ(stage.grab(), whole);
    }
}

TEST(Glow, FollowsItsProperties) {
    Stage stage(glowOn("black"), {400, 400});
    QQuickItem& glow = stage.item("glow");
    EXPECT_NEAR(stage.pixel({10, 10}).red(), 128, 1);
    glow.setProperty("color", QColor("#40ff8040"));
    EXPECT_NEAR(stage.pixel({10, 10}).red(), 64, 1);
    EXPECT_NEAR(stage.pixel({100, 1}).red(), added(64, 100, 1), 1);
    glow.setProperty("start", 150);
    EXPECT_NEAR(stage.pixel({100, 1}).red(), 64, 1);
    glow.setSize({100, 0});
    EXPECT_EQ(stage.pixel({10, 10}).red(), 0);
}

} // namespace
} // namespace velloran::test
