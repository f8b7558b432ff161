#include "ui/theme/Backdrop.h"

#include "ui/theme/DeviceNode.h"

#include <QPainter>
#include <QQuickWindow>

#include <utility>

namespace velloran {
namespace {

class KeepingNode final : public DeviceNode {
public:
    KeepingNode(QQuickWindow* window, std::shared_ptr<KeptPixels> pixels)
        : DeviceNode(window), pixels_(std::move(pixels)) {}

protected:
    void paint(QPainter& painter, const QRectF& /*place*/) override {
        if (painter.device()->devType() != QInternal::Image) {
            return;
        }
        // Only this part has been painted in this frame, and only this part will the veil be asked to paint.
        const QRect part = painter.clipBoundingRect().toAlignedRect();
        pixels_->place = part.topLeft();
        pixels_->picture = static_cast<QImage*>(painter.device())->copy(part);
        pixels_->picture.setDevicePixelRatio(1);
    }

private:
    std::shared_ptr<KeptPixels> pixels_;
};

class VeilNode final : public DeviceNode {
public:
    VeilNode(QQuickWindow* window, std::shared_ptr<const KeptPixels> pixels)
        : DeviceNode(window), pixels_(std::move(pixels)) {}

protected:
    void paint(QPainter& painter, const QRectF& /*place*/) override {
        painter.drawImage(pixels_->place, pixels_->picture);
    }

private:
    std::shared_ptr<const KeptPixels> pixels_;
};

} // namespace

Backdrop::Backdrop(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

QSGNode* Backdrop::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    auto* node = old != nullptr ? static_cast<KeepingNode*>(old) : new KeepingNode(window(), pixels_);
    node->resize(size());
    node->markDirty(QSGNode::DirtyMaterial);
    return node;
}

BackdropVeil::BackdropVeil(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &BackdropVeil::backdropChanged, this, [this] { update(); });
}

QSGNode* BackdropVeil::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    delete old;
    if (backdrop_ == nullptr) {
        return nullptr;
    }
    auto* node = new VeilNode(window(), backdrop_->pixels());
    node->resize(size());
    return node;
}

} // namespace velloran
