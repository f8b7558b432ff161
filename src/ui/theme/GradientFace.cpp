#include "GradientFace.h"

#include <QLinearGradient>
#include <QPainter>

namespace velloran {

GradientFace::GradientFace(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &GradientFace::changed, this, [this] { update(); });
}

void GradientFace::paint(QPainter* painter) {
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(0, top_);
    gradient.setColorAt(1, bottom_);
    painter->setPen(Qt::NoPen);
    painter->setBrush(gradient);
    painter->drawRoundedRect(boundingRect(), radius_, radius_);
}

} // namespace velloran
