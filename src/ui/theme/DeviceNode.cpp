#include "ui/theme/DeviceNode.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGRendererInterface>

namespace velloran {

void DeviceNode::render(const RenderState* state) {
    const QRegion& part = *state->clipRegion();
    if (part.isEmpty()) {
        return; // scrolled out of sight
    }
    auto* painter = static_cast<QPainter*>(
        window_->rendererInterface()->getResource(window_, QSGRendererInterface::PainterResource));
    // The part is told in points of the window: it has to be set before the painter turns to pixels.
    painter->setClipRegion(part);
    painter->setTransform(matrix()->toTransform());
    painter->setOpacity(inheritedOpacity());
    const QTransform toDevice = painter->deviceTransform();
    painter->setTransform(toDevice.inverted(), true);
    paint(*painter, toDevice.mapRect(rect()));
}

} // namespace velloran
