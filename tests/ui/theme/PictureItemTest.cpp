#include "ui/theme/Picture.h"

#include "harness/Stage.h"

#include <QDir>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace velloran::test {
namespace {

const QString pictures = ":/qt-project.org/imports/Velloran/art";

/// By how much the channels of all pixels are off: the furthest one, and all in the mean. 256 for another size.
struct Distances {
    int furthest = 256;
    double mean = 256;
};

Distances distances(QImage a, QImage b) {
    if (a.size() != b.size()) {
        return {};
    }
    a.convertTo(QImage::Format_ARGB32_Premultiplied);
    b.convertTo(QImage::Format_ARGB32_Premultiplied);
    int furthest = 0;
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar* const left = a.constScanLine(y);
        const uchar* const right = b.constScanLine(y);
        for (int byte = 0; byte < 4 * a.width(); ++byte) {
            const int off = std::abs(left[byte] - right[byte]);
            furthest = std::max(furthest, off);
            sum += off;
        }
    }
    return {furthest, sum / (4.0 * a.width() * a.height())};
}

int distance(const QImage& a, const QImage& b) {
    return distances(a, b).furthest;
}

/// The mean of what each pixel covers, worked out here: releases of the toolkit scale in different ways.
QImage averaged(const QImage& picture, QSize size) {
    const QImage large = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QImage small(size, QImage::Format_ARGB32_Premultiplied);
    const double across = double(large.width()) / size.width();
    const double down = double(large.height()) / size.height();
    const auto shared = [](double from, double to, int cell) {
        return std::min(to, cell + 1.0) - std::max(from, double(cell));
    };
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            std::array<double, 4> sum{};
            for (int row = int(y * down); row < std::min(large.height(), int(std::ceil((y + 1) * down))); ++row) {
                for (int column = int(x * across); column < std::min(large.width(), int(std::ceil((x + 1) * across)));
                     ++column) {
                    const double part = shared(y * down, (y + 1) * down, row) *
                                        shared(x * across, (x + 1) * across, column) / (across * down);
                    for (unsigned channel = 0; channel < 4; ++channel) {
                        sum.at(channel) += part * large.constScanLine(row)[4U * unsigned(column) + channel];
                    }
                }
            }
            for (unsigned channel = 0; channel < 4; ++channel) {
                small.scanLine(y)[4U * unsigned(x) + channel] = uchar(std::lround(sum.at(channel)));
            }
        }
    }
    return small;
}

TEST(Picture, HasScaledOnesThatAreTheLargeOnesScaled) {
    static const QRegularExpression form("^(\\w+)-(\\d+)x(\\d+)\\.png$");
    int count = 0;
    for (const QString& file : QDir(pictures).entryList()) {
        const auto match = form.match(file);
        if (match.hasMatch()) {
            ++count;
            const QSize size(match.captured(2).toInt(), match.captured(3).toInt());
            const QImage large(QString("%1/%2.png").arg(pictures, match.captured(1)));
            // One release of the toolkit made them, with a mean of its own. A pixel further this is 9 and more.
            EXPECT_LE(distances(Picture::read(match.captured(1), size), averaged(large, size)).mean, 2)
                << file.toStdString();
        }
    }
    EXPECT_EQ(count, 5);
}

TEST(Picture, IsNeverScaledWhileItIsReadAtOnePixelAPoint) {
    Stage stage("TitleBar { width: 400 }\n"
                "DragonAnimationView { y: 100; flying: false }");
    const QList<QQuickItem*> items = stage.itemsOf("Picture");
    EXPECT_EQ(items.size(), 3);
    for (const QQuickItem* item : items) {
        const QString name = item->property("name").toString();
        const QString file = QString("%1-%2x%3.png").arg(name).arg(item->width()).arg(item->height());
        EXPECT_TRUE(QDir(pictures).exists(file)) << file.toStdString();
    }
}

TEST(Picture, KeepsItsProportionsAndIsNoLargerThanDrawn) {
    EXPECT_EQ(Picture::read("DragonFly", {360, 360}).size(), QSize(360, 280));
    EXPECT_EQ(Picture::read("DragonFly", {270, 140}).size(), QSize(180, 140));
    EXPECT_EQ(Picture::read("DragonFly", {5400, 4200}).size(), QSize(540, 420));
    EXPECT_TRUE(Picture::read("Nobody", {10, 10}).isNull());
}

TEST(Picture, LooksAsTheToolkitsOwnImageHoweverItIsTurned) {
    Stage stage(
        "property bool own: true\n"
        "Picture { objectName: \"picture\"; x: 100; y: 90; width: 180; height: 140; name: \"DragonFly\"\n"
        "    visible: stage.own }\n"
        "Image { objectName: \"image\"; x: 100; y: 90; width: 180; height: 140; fillMode: Image.PreserveAspectFit\n"
        "    visible: !stage.own; source: \"qrc" +
        pictures.toUtf8() + "/DragonFly-180x140.png\" }");
    for (const double angle : {0.0, -4.0, 30.0}) {
        for (const double opacity : {1.0, 0.5}) {
            for (const char* name : {"picture", "image"}) {
                stage.item(name).setRotation(angle);
                stage.item(name).setOpacity(opacity);
            }
            stage.root->setProperty("own", true);
            const QImage ours = stage.grab();
            stage.root->setProperty("own", false);
            EXPECT_EQ(distance(ours, stage.grab()), 0) << angle << " degrees, opacity " << opacity;
        }
    }
}

TEST(Picture, IsReadAnewForAnotherNameAndSize) {
    Stage stage("Picture { objectName: \"picture\"; width: 52; height: 52; name: \"DragonIdle\" }");
    const QImage first = stage.grab();
    stage.item("picture").setProperty("name", "Logo");
    const QImage second = stage.grab();
    EXPECT_GT(distance(first, second), 3);
    stage.item("picture").setSize({160, 160});
    EXPECT_GT(distance(second, stage.grab()), 3);
}

} // namespace
} // namespace velloran::test
