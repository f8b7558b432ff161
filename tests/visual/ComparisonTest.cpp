#include "visual/comparison.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace velloran::test {
namespace {

QImage picture() {
    QImage image(200, 100, QImage::Format_RGB32);
    image.fill(QColor("#102030"));
    QPainter painter(&image);
    painter.fillRect(QRect(20, 20, 100, 40), QColor("#5588ff"));
    return image;
}

TEST(Comparison, FindsEqualPicturesEqual) {
    EXPECT_TRUE(compare(picture(), picture()).isClose());
    EXPECT_EQ(compare(picture(), picture()).differingPixels, 0);
}

TEST(Comparison, OverlooksRoundingButNotAnEdgeOutOfPlace) {
    QImage rounded = picture();
    rounded.setPixel(20, 20, qRgb(0x50, 0x80, 0xf0));
    EXPECT_TRUE(compare(rounded, picture()).isClose());
    QImage shifted = picture();
    QPainter(&shifted).fillRect(QRect(20, 60, 100, 1), QColor("#5588ff"));
    const Comparison comparison = compare(shifted, picture());
    EXPECT_FALSE(comparison.isClose());
    EXPECT_EQ(comparison.differingPixels, 100);
    EXPECT_EQ(comparison.difference.pixelColor(50, 60), QColor(Qt::red));
    EXPECT_NE(comparison.difference.pixelColor(50, 59), QColor(Qt::red));
}

TEST(Comparison, OtherSizesAreNeverClose) {
    EXPECT_FALSE(compare(picture().copy(0, 0, 199, 100), picture()).isClose());
}

TEST(Comparison, AMissingReferenceIsAFailure) {
    if (qEnvironmentVariableIsSet("VELLORAN_UPDATE_REFERENCES")) {
        GTEST_SKIP() << "references are being written";
    }
    EXPECT_FALSE(compareWithReference(picture(), "no such reference").isEmpty());
}

} // namespace
} // namespace velloran::test
