#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace velloran {

/// A rounded rectangle filled with a vertical gradient. A `Rectangle` can do the same but leaves jagged corners where
/// it is drawn in software.
class GradientFace : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor topColor MEMBER top_ NOTIFY changed)
    Q_PROPERTY(QColor bottomColor MEMBER bottom_ NOTIFY changed)
    /// Corner radius in points.
    Q_PROPERTY(qreal radius MEMBER radius_ NOTIFY changed)

public:
    explicit GradientFace(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    QColor top_;
    QColor bottom_;
    qreal radius_ = 0;
};

} // namespace velloran
