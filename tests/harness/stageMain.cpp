#include <QFontDatabase>
#include <QGuiApplication>

#include <gtest/gtest.h>

#include <cstdio>

// The screen exists in memory only, and text looks the same on every machine that has the one font.
int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_FONT_DPI", "96");
    const QGuiApplication application(argc, argv);
    if (!QFontDatabase::families().contains("Inter")) {
        std::fputs("These tests need the font Inter (fonts-inter).\n", stderr);
        return 1;
    }
    QFont font("Inter");
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
    return RUN_ALL_TESTS();
}
