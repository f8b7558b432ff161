#include "visual/comparison.h"

#include <QDir>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace velloran::test {
namespace {

// Enough for another rasterizer's rounding at the edge of a glyph, too little for another colour or a shifted edge.
constexpr int channelTolerance = 24;
constexpr double pixelTolerance = 0.0004;

int distance(QRgb a, QRgb b) {
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

/// The three pictures side by side.
QImage sideBySide(const QImage& left, const QImage& middle, const QImage& right) {
    QImage all(left.width() + middle.width() + right.width() + 20,
               std::max({left.height(), middle.height(), right.height()}), QImage::Format_RGB32);
    all.fill(Qt::magenta);
    QPainter painter(&all);
    int x = 0;
    for (const QImage* picture : {&left, &middle, &right}) {
        painter.drawImage(QRect(QPoint(x, 0), picture->size()), *picture);
        x += picture->width() + 10;
    }
    return all;
}

} // namespace

bool Comparison::isClose() const {
    return sameSize && differingPixels <= pixelTolerance * difference.width() * difference.height();
}

Comparison compare(const QImage& actual, const QImage& expected) {
    Comparison result;
    result.sameSize = actual.size() == expected.size();
    const QImage a = actual.convertToFormat(QImage::Format_RGB32);
    const QImage b = expected.convertToFormat(QImage::Format_RGB32);
    result.difference = QImage(a.size().expandedTo(b.size()), QImage::Format_RGB32);
    for (int y = 0; y < result.difference.height(); ++y) {
        for (int x = 0; x < result.difference.width(); ++x) {
            const bool differs =
                !a.valid(x, y) || !b.valid(x, y) || distance(a.pixel(x, y), b.pixel(x, y)) > channelTolerance;
            result.differingPixels += differs ? 1 : 0;
            const int grey = b.valid(x, y) ? qGray(b.pixel(x, y)) / 2 : 0;
            result.difference.setPixel(x, y, differs ? qRgb(255, 0, 0) : qRgb(grey, grey, grey));
        }
    }
    return result;
}

QString compareWithReference(const QImage& actual, const QString& name) {
    const QString file = QString("%1@%2x.png").arg(name).arg(std::lround(actual.devicePixelRatio()));
    const QString reference = QDir(VELLORAN_REFERENCES).filePath(file);
    if (qEnvironmentVariableIsSet("VELLORAN_UPDATE_REFERENCES")) {
        return actual.save(reference) ? QString() : "Cannot write " + reference;
    }
    QImage expected(reference);
    if (expected.isNull()) {
        return "There is no reference " + reference;
    }
    QImage shown = actual;
    shown.setDevicePixelRatio(1);
    expected.setDevicePixelRatio(1);
    const Comparison comparison = compare(shown, expected);
    if (comparison.isClose()) {
        return {};
    }
    QDir(VELLORAN_FAILURES).mkpath(".");
    const QString failure = QDir(VELLORAN_FAILURES).filePath(file);
    sideBySide(expected, shown, comparison.difference).save(failure);
    return QString("%1 pixels differ; expected, shown and difference are in %2")
        .arg(comparison.differingPixels)
        .arg(failure);
}

} // namespace velloran::test
