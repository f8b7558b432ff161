#include "ui/theme/BackgroundProvider.h"

#include "ui/theme/pictureRequest.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velloran {
namespace {

/// Of a number that is not negative and not large: the library's own would take most of the time that a picture takes.
double fraction(double value) {
    return value - static_cast<int>(value);
}

// Evenly spread values in 0…1 that look like noise. Rounding against them instead of against one half hides the contour
// lines that so slow a gradient has in eight bits.
double threshold(int x, int y) {
    return fraction(52.9829189 * fraction(0.06711056 * x + 0.00583715 * y));
}

} // namespace

QImage BackgroundProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const PictureRequest request(id);
    const QColor color = request.color();
    const double scale = requestedSize.width() / std::max(1.0, request.values.queryItemValue("radius").toDouble());
    const double start = request.number("start") * scale;
    const double end = requestedSize.width();
    const double strength = 255 * color.alphaF();
    const std::array<double, 3> parts{color.redF(), color.greenF(), color.blueF()};

    // Premultiplied colour with next to no alpha: drawn over something opaque, such a pixel is added to it. One step of
    // alpha has to stay, since the rasterizer passes over pixels that have none.
    QImage picture(requestedSize, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    for (int y = 0; y < picture.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const double distance = std::sqrt((x + 0.5) * (x + 0.5) + (y + 0.5) * (y + 0.5));
            if (distance >= end) {
                break; // and so is the rest of the line
            }
            const double light = strength * std::min(1.0, (end - distance) / (end - start));
            const double bias = threshold(x, y);
            const auto channel = [light, bias](double part) { return static_cast<int>(light * part + bias); };
            const int red = channel(parts[0]);
            const int green = channel(parts[1]);
            const int blue = channel(parts[2]);
            line[x] = qRgba(red, green, blue, (red | green | blue) == 0 ? 0 : 1);
        }
    }
    *size = requestedSize;
    return picture;
}

} // namespace velloran
