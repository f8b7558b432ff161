#pragma once

#include <QColor>
#include <QQuickItem>

namespace velloran {

/// A filled rounded rectangle with its border drawn inside the edge and over the fill, so that a translucent border
/// takes its tint from the fill and not from what lies behind. Its edges lie on whole pixels of the screen whatever the
/// scale, and its border is a whole number of them wide, rounded down but never to nothing, the same on all sides. The
/// toolkit's own rectangle keeps neither where a point is not a whole number of pixels.
///
/// One that is no more than a point high or wide is a line, as thick as a border of that width. A circle has no
/// straight sides, so that its border is as wide as it is told to be.
class RoundedFace : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Nothing is filled unless this is set.
    Q_PROPERTY(QColor fill READ fill WRITE setFill NOTIFY fillChanged FINAL)
    /// What the fill has turned into at the bottom; the same colour all over unless this is set.
    Q_PROPERTY(QColor lowerFill READ lowerFill WRITE setLowerFill NOTIFY lowerFillChanged FINAL)
    /// The colour of the border; there is none unless this is set.
    Q_PROPERTY(QColor stroke READ stroke WRITE setStroke NOTIFY strokeChanged FINAL)
    /// In points.
    Q_PROPERTY(qreal strokeWidth READ strokeWidth WRITE setStrokeWidth NOTIFY strokeWidthChanged FINAL)
    /// Corner radius in points.
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged FINAL)

public:
    explicit RoundedFace(QQuickItem* parent = nullptr);

    [[nodiscard]] QColor fill() const { return fill_; }

    void setFill(const QColor& fill) { show(fill_, fill, &RoundedFace::fillChanged); }

    [[nodiscard]] QColor lowerFill() const { return lowerFill_; }

    void setLowerFill(const QColor& lowerFill) { show(lowerFill_, lowerFill, &RoundedFace::lowerFillChanged); }

    [[nodiscard]] QColor stroke() const { return stroke_; }

    void setStroke(const QColor& stroke) { show(stroke_, stroke, &RoundedFace::strokeChanged); }

    [[nodiscard]] qreal strokeWidth() const { return strokeWidth_; }

    void setStrokeWidth(qreal strokeWidth) { show(strokeWidth_, strokeWidth, &RoundedFace::strokeWidthChanged); }

    [[nodiscard]] qreal radius() const { return radius_; }

    void setRadius(qreal radius) { show(radius_, radius, &RoundedFace::radiusChanged); }

signals:
    void fillChanged();
    void lowerFillChanged();
    void strokeChanged();
    void strokeWidthChanged();
    void radiusChanged();

protected:
    QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

private:
    /// What MEMBER properties and a connection for each would do, in less time: a window has a hundred faces.
    template<typename Value>
    void show(Value& current, const Value& value, void (RoundedFace::*changed)()) {
        if (current != value) {
            current = value;
            update();
            emit(this->*changed)();
        }
    }

    QColor fill_ = Qt::transparent;
    QColor lowerFill_;
    QColor stroke_ = Qt::transparent;
    qreal strokeWidth_ = 1;
    qreal radius_ = 0;
};

} // namespace velloran
