#include "BackgroundProvider.h"

#include "pictureRequest.h"

#include <algorithm>
#include <cmath>

namespace velloran {

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
            const auto channel = [light](float value) { return static_cast<int>(std::lround(light * value)); };
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
