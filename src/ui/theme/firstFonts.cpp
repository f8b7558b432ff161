#include "ui/theme/firstFonts.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QString>

#include <array>

namespace velloran {
namespace {

struct Kind {
    int pixels = 0;
    QFont::Weight weight = QFont::Normal;
};

// Text whose size is no whole number of points is laid out twice as large.
constexpr std::array kinds{
    Kind{12, QFont::Normal},   Kind{13, QFont::Normal},   Kind{13, QFont::Medium},   Kind{14, QFont::Medium},
    Kind{14, QFont::DemiBold}, Kind{15, QFont::Medium},   Kind{15, QFont::DemiBold}, Kind{16, QFont::DemiBold},
    Kind{17, QFont::DemiBold}, Kind{18, QFont::DemiBold}, Kind{25, QFont::Normal},   Kind{25, QFont::Medium},
    Kind{26, QFont::Bold},     Kind{27, QFont::Medium},
};

} // namespace

std::vector<QFont> firstFonts() {
    std::vector<QFont> fonts;
    for (const Kind& kind : kinds) {
        QFont font(QGuiApplication::font().family());
        font.setPixelSize(kind.pixels);
        font.setWeight(kind.weight);
        fonts.push_back(font);
    }
    return fonts;
}

void openFirstFonts() {
    for (const QFont& font : firstFonts()) {
        // What is laid out has the tables read as well that tell how letters go together.
        QFontMetricsF(font).horizontalAdvance(QStringLiteral("Aa"));
    }
}

} // namespace velloran
