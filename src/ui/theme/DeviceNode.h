#pragma once

#include <QRectF>
#include <QSGRenderNode>

class QPainter;
class QQuickWindow;

namespace velloran {

/// A node that paints in the pixels of the device, for what has to lie on whole ones at every scale. Only the software
/// renderer can show it.
class DeviceNode : public QSGRenderNode {
public:
    explicit DeviceNode(QQuickWindow* window) : window_(window) {}

    /// In points.
    void resize(QSizeF size) { size_ = size; }

    [[nodiscard]] QSizeF size() const { return size_; }

    [[nodiscard]] RenderingFlags flags() const override { return BoundedRectRendering; }

    [[nodiscard]] QRectF rect() const override { return {QPointF(), size_}; }

    void render(const RenderState* state) override;

protected:
    /// `place` is where the node lies on the device. The painter's coordinates are pixels, and it is clipped to what
    /// has to be painted anew.
    virtual void paint(QPainter& painter, const QRectF& place) = 0;

private:
    QQuickWindow* window_;
    QSizeF size_;
};

} // namespace velloran
