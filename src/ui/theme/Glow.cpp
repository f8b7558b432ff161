#include "ui/theme/Glow.h"

#include "ui/theme/DeviceNode.h"

#include <QImage>
#include <QPainter>
#include <QPoint>
#include <QRect>
#include <QRegion>

#include <algorithm>
#include <cmath>

namespace velloran {
namespace {

/// Points of a part of the glow. Whatever changes in one, the renderer flushes all of it.
constexpr int stripHeight = 104;
/// Rows that are worked out before they are painted.
constexpr int rowsAtOnce = 16;

/// Of a number that is not negative and not large: the library's own would take most of the time.
double fraction(double value) {
    return value - static_cast<int>(value);
}

// Evenly spread values in 0…1 that look like noise. Rounding against them instead of against one half hides the contour
// lines that so slow a gradient has in eight bits.
double threshold(int x, int y) {
    return fraction(52.9829189 * fraction(0.06711056 * x + 0.00583715 * y));
}

/// The light, in pixels of the device from its middle.
struct Light {
    double red = 0;
    double green = 0;
    double blue = 0;
    double start = 0;
    double end = 0;

    Light(const QColor& color, double from, double to) : start(from), end(to) {
        // In the eight bits that a screen has.
        const QColor shown = QColor::fromRgba(color.rgba());
        const double strength = 255 * shown.alphaF();
        red = strength * shown.redF();
        green = strength * shown.greenF();
        blue = strength * shown.blueF();
    }

    /// How many pixels of that row it reaches.
    [[nodiscard]] int reach(int y) const {
        const double down = y + 0.5;
        return down >= end ? 0 : static_cast<int>(std::ceil(std::sqrt(end * end - down * down) - 0.5));
    }

    // Premultiplied colour with next to no alpha: drawn over something opaque, such a pixel is added to it. One step of
    // alpha has to stay, since the rasterizer passes over pixels that have none.
    [[nodiscard]] QRgb at(int x, int y) const {
        const double distance = std::sqrt((x + 0.5) * (x + 0.5) + (y + 0.5) * (y + 0.5));
        const double light = std::clamp((end - distance) / (end - start), 0.0, 1.0);
        const double bias = threshold(x, y);
        const auto channel = [light, bias](double part) { return static_cast<int>(light * part + bias); };
        const int r = channel(red);
        const int g = channel(green);
        const int b = channel(blue);
        return qRgba(r, g, b, (r | g | b) == 0 ? 0 : 1);
    }
};

class StripNode final : public DeviceNode {
public:
    using DeviceNode::DeviceNode;

    void show(const QColor& color, qreal start, QSizeF whole, qreal top) {
        color_ = color;
        start_ = start;
        top_ = top;
        reach_ = whole.width();
        resize({whole.width(), std::min<qreal>(stripHeight, whole.height() - top)});
        markDirty(DirtyMaterial);
    }

    [[nodiscard]] QRectF rect() const override { return {QPointF(0, top_), size()}; }

protected:
    void paint(QPainter& painter, const QRectF& place) override {
        const double scale = place.width() / size().width();
        const QPoint middle(qRound(place.left()), qRound(place.top() - top_ * scale));
        const QRect strip(QPoint(middle.x(), qRound(place.top())),
                          QPoint(qRound(place.right()) - 1, qRound(place.bottom()) - 1));
        const Light light(color_, start_ * scale, reach_ * scale);
        for (const QRect& part : partsToPaint(painter).intersected(strip)) {
            for (int top = part.top(); top <= part.bottom(); top += rowsAtOnce) {
                paintRows(painter, light, middle,
                          {part.left(), top, part.width(), std::min(rowsAtOnce, part.bottom() + 1 - top)});
            }
        }
    }

private:
    /// No less than what is painted anew, in parts that do not overlap.
    static QRegion partsToPaint(const QPainter& painter) {
        QRegion parts;
        for (const QRect& part : painter.clipRegion()) {
            // Where a point is not a whole number of pixels, the edges may have been rounded.
            parts += part.adjusted(-1, -1, 1, 1);
        }
        return parts;
    }

    static void paintRows(QPainter& painter, const Light& light, QPoint middle, const QRect& rows) {
        const QPoint first = rows.topLeft() - middle;
        const int width = std::min(rows.width(), light.reach(first.y()) - first.x());
        if (width <= 0) {
            return;
        }
        QImage picture(width, rows.height(), QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < rows.height(); ++y) {
            auto* const line = reinterpret_cast<QRgb*>(picture.scanLine(y));
            for (int x = 0; x < width; ++x) {
                line[x] = light.at(first.x() + x, first.y() + y);
            }
        }
        painter.drawImage(rows.topLeft(), picture);
    }

    QColor color_;
    qreal start_ = 0;
    qreal reach_ = 0;
    qreal top_ = 0;
};

} // namespace

Glow::Glow(QQuickItem* parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

void Glow::setColor(const QColor& color) {
    if (color != color_) {
        color_ = color;
        update();
        emit colorChanged();
    }
}

void Glow::setStart(qreal start) {
    if (start != start_) {
        start_ = start;
        update();
        emit startChanged();
    }
}

QSGNode* Glow::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
    // It changes so rarely that its parts are made anew.
    delete old;
    if (width() <= start_ || height() <= 0) {
        return nullptr;
    }
    auto* const strips = new QSGNode;
    for (int number = 0; number * stripHeight < height(); ++number) {
        auto* const strip = new StripNode(window());
        strip->show(color_, start_, size(), number * stripHeight);
        strips->appendChildNode(strip);
    }
    return strips;
}

} // namespace velloran
