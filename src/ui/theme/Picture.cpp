#include "ui/theme/Picture.h"

#include "ui/theme/DeviceNode.h"
#include "ui/theme/PngReader.h"

#include <QFile>
#include <QPainter>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>

namespace velloran {
namespace {

/// Rows that are painted in one go. From 96 on the toolkit shares them out among threads, which for a picture of this
/// program takes longer than painting them, and wakes each of the threads for every frame.
constexpr int rowsAtOnce = 64;

QString pathOf(const QString& fileName) {
    return ":/qt-project.org/imports/Velloran/art/" + fileName + ".png";
}

class PictureNode final : public DeviceNode {
public:
    using DeviceNode::DeviceNode;

    void show(const QPixmap& pixmap) {
        pixmap_ = pixmap;
        markDirty(DirtyMaterial);
    }

protected:
    void paint(QPainter& painter, const QRectF& place) override {
        QRectF target(QPointF(), QSizeF(pixmap_.size()).scaled(size(), Qt::KeepAspectRatio));
        target.moveCenter(rect().center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        // Its edges are clear anyway, and each row stays in one piece.
        painter.setRenderHint(QPainter::Antialiasing, false);
        const QRect part = painter.clipBoundingRect().intersected(place).toAlignedRect();
        for (int top = part.top(); top <= part.bottom(); top += rowsAtOnce) {
            painter.save();
            painter.setClipRect(part.left(), top, part.width(), std::min(rowsAtOnce, part.bottom() + 1 - top),
                                Qt::IntersectClip);
            painter.setTransform(matrix()->toTransform());
            painter.drawPixmap(target, pixmap_, QRectF(pixmap_.rect()));
            painter.restore();
        }
    }

private:
    QPixmap pixmap_;
};

} // namespace

Picture::Picture(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void Picture::setName(const QString& name) {
    if (name == name_) {
        return;
    }
    name_ = name;
    polish();
    emit nameChanged();
}

QImage Picture::read(const QString& name, QSize inside) {
    const QString scaled = pathOf(QStringLiteral("%1-%2x%3").arg(name).arg(inside.width()).arg(inside.height()));
    return QFile::exists(scaled) ? PngReader(scaled).read() : readLarge(name, inside);
}

QImage Picture::readLarge(const QString& name, QSize inside) {
    PngReader reader(pathOf(name));
    const QSizeF large = reader.size();
    const qreal scale = std::min({1.0, inside.width() / large.width(), inside.height() / large.height()});
    reader.setScaledSize({qRound(large.width() * scale), qRound(large.height() * scale)});
    return reader.read();
}

void Picture::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size()) {
        polish();
        update();
    }
}

void Picture::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged) {
        polish();
    }
}

void Picture::updatePolish() {
    const qreal ratio = window() == nullptr ? 1 : window()->effectiveDevicePixelRatio();
    const QSize inside(static_cast<int>(std::ceil(width() * ratio)), static_cast<int>(std::ceil(height() * ratio)));
    if (inside.isEmpty() || (inside == shownInside_ && name_ == shownName_)) {
        return;
    }
    shownInside_ = inside;
    shownName_ = name_;
    pixmap_ = QPixmap::fromImage(read(name_, inside));
    if (pixmap_.isNull()) {
        qWarning("There is no picture called %s.", qUtf8Printable(name_));
    }
    update();
}

QSGNode* Picture::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    if (pixmap_.isNull() || width() <= 0 || height() <= 0) {
        delete old;
        return nullptr;
    }
    auto* node = old != nullptr ? static_cast<PictureNode*>(old) : new PictureNode(window());
    node->resize(size());
    node->show(pixmap_);
    return node;
}

} // namespace velloran
