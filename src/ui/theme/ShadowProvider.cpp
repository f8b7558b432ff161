#include "ui/theme/ShadowProvider.h"

#include "ui/theme/blur.h"
#include "ui/theme/pictureRequest.h"

#include <QPainter>

#include <cmath>

namespace velloran {

QImage ShadowProvider::requestImage(const QString& id, QSize* size, const QSize&) {
    const PictureRequest request(id);
    const int radius = request.number("radius");
    const int blurRadius = request.number("blur");
    const int reach = static_cast<int>(std::ceil(blurRadius * 1.5));
    const QRect shape(reach, reach, request.number("width"), request.number("height"));

    QImage alpha(shape.width() + 2 * reach, shape.height() + 2 * reach, QImage::Format_Alpha8);
    alpha.fill(Qt::transparent);
    QPainter shapePainter(&alpha);
    shapePainter.setRenderHint(QPainter::Antialiasing);
    shapePainter.setPen(Qt::NoPen);
    shapePainter.setBrush(Qt::black);
    shapePainter.drawRoundedRect(shape, radius, radius);
    shapePainter.end();
    blur(alpha, blurRadius / 2.0);

    QImage picture(alpha.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(request.color());
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, alpha);
    *size = picture.size();
    return picture;
}

} // namespace velloran
