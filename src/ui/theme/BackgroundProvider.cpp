#include "ui/theme/BackgroundProvider.h"

#include "ui/theme/pictureRequest.h"

#include <algorithm>
#include <cmath>

namespace velloran {
namespace {

// Evenly spread values in 0…1 that look like noise. Rounding against them instead of against one half hides the contour
// lines that so slow a gradient has in eight bits.
double threshold(int x, int y) {
    const double value = 52.9829189 * std::fmod(0.06711056 * x + 0.00583715 * y, 1.0);
    return value - std::floor(value);
}

} // namespace

QImage BackgroundProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const PictureRequest request(id);
    const QColor color = request.color();
    const double scale = requestedSize.width() / std::max(1.0, request.values.queryItemValue("radius").toDouble());
    const double start = request.number("start") * scale;
    const double end = requestedSize.width();
    const double strength = color.alphaF();

    // Premultiplied colour with next to no alpha: drawn over something opaque, such a pixel is added to it. One step of
    // alpha has to stay, since the rasterizer passes over pixels that have none.
    QImage picture(requestedSize, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < picture.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const double distance = std::hypot(x + 0.5, y + 0.5);
            const double light = 255 * strength * std::clamp((end - distance) / (end - start), 0.0, 1.0);
            const double bias = threshold(x, y);
            const auto channel = [light, bias](float value) {
                return static_cast<int>(std::floor(light * value + bias));
            };
            const int red = channel(color.redF());
            const int green = channel(color.greenF());
            const int blue = channel(color.blueF());
            line[x] = qRgba(red, green, blue, (red | green | blue) == 0 ? 0 : 1);
        }
    }
    *size = requestedSize;
    return picture;
}

} // namespace velloran
