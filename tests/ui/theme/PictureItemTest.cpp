#include "ui/theme/Picture.h"

#include "harness/Stage.h"

#include <QDir>
#include <QLibraryInfo>
#include <QRegularExpression>
#include <QVersionNumber>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace velloran::test {
namespace {

const QString pictures = ":/qt-project.org/imports/Velloran/art";

/// By how much the furthest channel of any pixel is off; 256 for another size.
int distance(QImage a, QImage b) {
    if (a.size() != b.size()) {
        return 256;
    }
    a.convertTo(QImage::Format_ARGB32_Premultiplied);
    b.convertTo(QImage::Format_ARGB32_Premultiplied);
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar* const left = a.constScanLine(y);
        const uchar* const right = b.constScanLine(y);
        for (int byte = 0; byte < 4 * a.width(); ++byte) {
            most = std::max(most, std::abs(left[byte] - right[byte]));
        }
    }
    return most;
}

TEST(Picture, HasScaledOnesThatAreTheLargeOnesScaled) {
    if (QLibraryInfo::version() >= QVersionNumber(6, 5)) {
        GTEST_SKIP() << "The scaled ones are made with Qt 6.4; this one scales and turns pictures in another way.";
    }
    static const QRegularExpression form("^(\\w+)-(\\d+)x(\\d+)\\.png$");
    int count = 0;
    for (const QString& file : QDir(pictures).entryList()) {
        const auto match = form.match(file);
        if (match.hasMatch()) {
            ++count;
            const QSize size(match.captured(2).toInt(), match.captured(3).toInt());
            // A toolkit that scales in another way may round differently.
            EXPECT_LE(distance(Picture::read(match.captured(1), size), Picture::readLarge(match.captured(1), size)), 2)
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
    if (QLibraryInfo::version() >= QVersionNumber(6, 5)) {
        GTEST_SKIP() << "The scaled ones are made with Qt 6.4; this one scales and turns pictures in another way.";
    }
    Stage stage(
        "property bool own: true\n"
        "Picture { objectName: \"picture\"; x: 100; y: 60; width: 180; height: 200; name: \"DragonFly\"\n"
        "    visible: stage.own }\n"
        "Image { objectName: \"image\"; x: 100; y: 60; width: 180; height: 200; fillMode: Image.PreserveAspectFit\n"
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
