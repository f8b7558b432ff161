#include "ui/theme/IconProvider.h"

#include "ui/theme/pictureRequest.h"

#include <QPainter>
#include <QSvgRenderer>

namespace velloran {

QImage IconProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const PictureRequest request(id);
    QSvgRenderer drawing(":/qt-project.org/imports/Velloran/icons/" + request.name + ".svg");
    if (!drawing.isValid()) {
        return {};
    }
    const QSize pixels = requestedSize.isEmpty() ? drawing.defaultSize() : requestedSize;
    QImage picture(pixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(picture.rect(), request.color());
    *size = pixels;
    return picture;
}

} // namespace velloran
