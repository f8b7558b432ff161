#include "ui/theme/RoundedFace.h"

#include "ui/theme/DeviceNode.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

namespace velloran {
namespace {

struct Look {
    QColor fill;
    QColor lowerFill;
    QColor stroke;
    qreal strokeWidth = 0;
    qreal radius = 0;
};

// What a line of that many pixels is drawn with. A scale of 1.25 may come out a hair too small.
qreal wholePixels(qreal pixels) {
    return std::max(1.0, std::floor(pixels + 1e-6));
}

class FaceNode final : public DeviceNode {
public:
    using DeviceNode::DeviceNode;

    void show(const Look& look) {
        look_ = look;
        markDirty(DirtyMaterial);
    }

protected:
    void paint(QPainter& painter, const QRectF& place) override {
        const qreal scale = place.width() / size().width();
        const QRectF face = onPixels(place);
        const qreal radius = std::min(look_.radius * scale, std::min(face.width(), face.height()) / 2);
        const bool isCircle = radius * 2 >= std::max(face.width(), face.height());
        const qreal width = isCircle ? look_.strokeWidth * scale : wholePixels(look_.strokeWidth * scale);
        const bool hasCorners = radius > 0 && touchesCorner(painter.clipBoundingRect(), face, radius);
        painter.setPen(Qt::NoPen);
        fillFace(painter, face, hasCorners ? radius : 0);
        if (look_.stroke.alpha() > 0) {
            strokeFace(painter, face, hasCorners ? radius : 0, width);
        }
    }

private:
    [[nodiscard]] QRectF onPixels(const QRectF& place) const {
        QRectF face(QPointF(std::round(place.left()), std::round(place.top())),
                    QPointF(std::round(place.right()), std::round(place.bottom())));
        if (size().width() == size().height()) {
            const qreal side = std::min(face.width(), face.height()); // what is square stays square
            face.setSize(QSizeF(side, side));
        }
        if (size().width() <= 1) {
            face.setWidth(wholePixels(place.width()));
        }
        if (size().height() <= 1) {
            face.setHeight(wholePixels(place.height()));
        }
        return face;
    }

    // Most of what is painted anew lies inside of a face, where nothing has to be smoothed.
    static bool touchesCorner(const QRectF& part, const QRectF& face, qreal radius) {
        const QSizeF size(radius, radius);
        const std::array corners{QRectF(face.topLeft(), size), QRectF(face.topRight() - QPointF(radius, 0), size),
                                 QRectF(face.bottomLeft() - QPointF(0, radius), size),
                                 QRectF(face.bottomRight() - QPointF(radius, radius), size)};
        return std::any_of(corners.begin(), corners.end(),
                           [&](const QRectF& corner) { return corner.intersects(part); });
    }

    void fillFace(QPainter& painter, const QRectF& face, qreal radius) const {
        QBrush brush(look_.fill);
        if (look_.lowerFill.isValid()) {
            QLinearGradient gradient(face.topLeft(), face.bottomLeft());
            gradient.setColorAt(0, look_.fill);
            gradient.setColorAt(1, look_.lowerFill);
            brush = gradient;
        } else if (look_.fill.alpha() == 0) {
            return;
        }
        if (radius > 0) {
            painter.setBrush(brush);
            painter.drawRoundedRect(face, radius, radius);
        } else {
            painter.fillRect(face, brush);
        }
    }

    void strokeFace(QPainter& painter, const QRectF& face, qreal radius, qreal width) const {
        const QRectF inside = face.adjusted(width, width, -width, -width);
        if (radius == 0 && inside.isValid()) {
            painter.fillRect(QRectF(face.topLeft(), inside.topRight() + QPointF(width, 0)), look_.stroke);
            painter.fillRect(QRectF(inside.bottomLeft() - QPointF(width, 0), face.bottomRight()), look_.stroke);
            painter.fillRect(QRectF(inside.topLeft() - QPointF(width, 0), inside.bottomLeft()), look_.stroke);
            painter.fillRect(QRectF(inside.topRight(), inside.bottomRight() + QPointF(width, 0)), look_.stroke);
            return;
        }
        QPainterPath ring;
        ring.addRoundedRect(face, radius, radius);
        if (inside.isValid()) {
            const qreal insideRadius = std::max(0.0, radius - width);
            ring.addRoundedRect(inside, insideRadius, insideRadius);
        }
        painter.fillPath(ring, look_.stroke);
    }

    Look look_;
};

} // namespace

RoundedFace::RoundedFace(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

QSGNode* RoundedFace::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    if (width() <= 0 || height() <= 0) {
        delete old;
        return nullptr;
    }
    auto* node = old != nullptr ? static_cast<FaceNode*>(old) : new FaceNode(window());
    node->resize(size());
    node->show({fill_, lowerFill_, stroke_, strokeWidth_, radius_});
    return node;
}

} // namespace velloran
