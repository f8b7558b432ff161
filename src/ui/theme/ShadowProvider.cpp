#include "ShadowProvider.h"

#include "blur.h"
#include "pictureRequest.h"

#include <QPainter>

#include <cmath>

namespace velloran {

namespace {

void fillRounded(QPainter& painter, const QRect& shape, int radius) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(shape, radius, radius);
}

} // namespace

QImage ShadowProvider::requestImage(const QString& id, QSize* size, const QSize&) {
    const PictureRequest request(id);
    const int radius = request.number("radius");
    const int blurRadius = request.number("blur");
    const int reach = static_cast<int>(std::ceil(blurRadius * 1.5));
    const QRect shape(reach, reach, request.number("width"), request.number("height"));

    QImage alpha(shape.width() + 2 * reach, shape.height() + 2 * reach, QImage::Format_Alpha8);
    alpha.fill(Qt::transparent);
    QPainter shapePainter(&alpha);
    fillRounded(shapePainter, shape, radius);
    shapePainter.end();
    blur(alpha, blurRadius / 2.0);

    QImage picture(alpha.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(request.color());
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, alpha);
    if (request.number("hollow") != 0) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
        fillRounded(painter, shape.translated(0, -request.number("offset")), radius);
    }
    *size = picture.size();
    return picture;
}

} // namespace velloran
